// A JS core for direct calls into the library: it keeps what it is told and records every operation.
#pragma once

#include "tests/abi/fakebrowser.h"
#include "vexlite/jscore.h"
#include "vexlite/jsmemberlist.h"

#include <QMap>
#include <QStringList>
#include <cstdarg>

/// A member table entry, with everything that came with it.
struct FakeMember final : JSMemberEntry {
    std::u16string name;
    std::int32_t kind = 0;
    std::uint32_t mask = 0;
    std::int32_t resultType = 0;
    std::vector<JSParameter> parameters;
};

/// The published list is a copy of a table's entries; the tests read them directly.
class FakeMemberList final : public IJSMemberList {
public:
    explicit FakeMemberList(JSMemberTable entries)
        : table(std::move(entries))
    {
    }
    KResult QueryInterface(const KIID&, void**) override { return KR_NO_INTERFACE; }
    std::uint32_t AddRef() override { return ++m_references; }
    std::uint32_t Release() override
    {
        const std::uint32_t left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    std::int32_t Count() const override { return static_cast<std::int32_t>(table.size()); }
    std::int32_t Id(std::int32_t index) const override { return index; }
    const char16_t* Name(std::int32_t index) const override { return member(index).name.c_str(); }
    std::int32_t Kind(std::int32_t index) const override { return member(index).kind; }
    std::uint32_t Mask(std::int32_t index) const override { return member(index).mask; }
    std::int32_t ResultType(std::int32_t index) const override { return member(index).resultType; }
    std::int32_t ParameterCount(std::int32_t index) const override
    {
        return static_cast<std::int32_t>(member(index).parameters.size());
    }
    JSParameter Parameter(std::int32_t index, std::int32_t parameter) const override
    {
        return member(index).parameters.at(static_cast<std::size_t>(parameter));
    }
    JSMemberInvoke Invoke(std::int32_t index) const override { return member(index).invoke; }

    const JSMemberTable table;

private:
    virtual ~FakeMemberList() = default;
    const FakeMember& member(std::int32_t id) const { return static_cast<const FakeMember&>(*table.at(id)); }
    std::uint32_t m_references = 1;
};

class FakeHub final : public IJSEventHub {
public:
    KResult Add(const QString& event, const JSContextEnv&, const KJSVariant&) override
    {
        operations << QStringLiteral("add ") + event;
        return status;
    }
    KResult Remove(const QString& event, const JSContextEnv&, const KJSVariant& callback) override
    {
        operations << QStringLiteral("remove %1 %2").arg(event).arg(callback.type());
        return status;
    }
    KResult Dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) override
    {
        operations
            << QStringLiteral("dispatch %1 %2 %3").arg(event).arg(target.contextId).arg(payload.size());
        if (const auto called = std::exchange(listener, {}))
            called();
        return status;
    }
    KResult Report(KJSVariant& result) override
    {
        result = KJSVariant::fromInt32(27);
        return status;
    }

    QStringList operations;
    std::function<void()> listener; ///< called within the next event, once
    KResult status = KR_OK;
};

class FakeCore final : public IVEXJSCore,
                       public IJSTypeIdAllocator,
                       public IJSRegistry,
                       public IJSTraceHook,
                       public IJSPromiseService,
                       public IJSEventHubFactory,
                       public IJSObjectFactory {
public:
    /// What the library finds; null is a process without a JS core.
    static inline IVEXJSCore* current = nullptr;

    FakeCore() { current = this; }
    ~FakeCore() { current = nullptr; }
    FakeCore(const FakeCore&) = delete;
    FakeCore& operator=(const FakeCore&) = delete;

    IJSTypeIdAllocator* TypeIds() override { return this; }
    IJSRegistry* Registry() override { return this; }
    IJSTraceHook* TraceHook() override { return tracing ? this : nullptr; }
    IJSPromiseService* PromiseService() override { return this; }
    IJSAnswerChannel* AnswerChannel() override { return nullptr; }
    IJSEventHubFactory* EventHubs() override { return this; }
    IJSObjectFactory* Objects() override { return this; }
    IVEXBrowser* Browser(std::int64_t id) override { return id == 4 ? &browser : nullptr; }

    std::int32_t AllocateTypeId(std::int32_t) override { return nextTypeId++; }

    KResult Bind(
        IJSExtentionObject* object, std::int64_t context, std::int64_t target, std::int64_t zero) override
    {
        bound.push_back(object);
        operations << QStringLiteral("bind %1 %2 %3").arg(context).arg(target).arg(zero);
        return 0x1234; // ignored by a factory
    }
    void CallCompleted(const JSContextEnv& context, KJSVariant& value, std::int64_t extra) override
    {
        operations
            << QStringLiteral("completed %1 %2 %3").arg(context.contextId).arg(value.type()).arg(extra);
    }
    void AssignTable(JSMemberTable& source, JSMemberTable& destination) override
    {
        operations << QStringLiteral("assign %1").arg(source.size());
        destination.swap(source);
        source.clear();
    }
    KResult PublishTable(const JSMemberTable& table, IJSMemberList** out) override
    {
        operations << QStringLiteral("publish %1").arg(table.size());
        *out = new FakeMemberList(table);
        return KR_OK;
    }
    const JSMemberEntry* FindMember(const JSMemberTable& table, std::int32_t id, JSAccess access) override
    {
        operations << QStringLiteral("find %1 %2").arg(id).arg(static_cast<int>(access));
        const auto found = table.find(id);
        if (found == table.end()
            || static_cast<const FakeMember&>(*found->second).kind != static_cast<int>(access))
            return nullptr;
        return found->second.get();
    }
    void AddMember(JSMemberTable& table, const char16_t* name, std::int32_t kind, std::uint32_t mask,
        std::int32_t resultType, ...) override
    {
        auto member = std::make_shared<FakeMember>();
        member->name = name;
        member->kind = kind;
        member->mask = mask;
        member->resultType = resultType;
        va_list rest;
        va_start(rest, resultType);
        member->invoke = va_arg(rest, JSMemberInvoke);
        const int count = va_arg(rest, int);
        for (int i = 0; i < count; ++i)
            member->parameters.push_back(va_arg(rest, JSParameter));
        va_end(rest);
        ++added;
        table.emplace(static_cast<std::int32_t>(table.size()), std::move(member));
    }
    std::int64_t SubObjectToken(IJSExtentionObject*) override { return 77; }

    bool FilterTable(const QString& name, const JSContextEnv&, const JSMemberTable& table,
        JSMemberTable& replacement) override
    {
        operations << QStringLiteral("filter ") + name;
        if (filtering)
            replacement.insert(*table.begin());
        return filtering;
    }
    void CallNotice(const QString& name, const JSContextEnv&, const JSMemberEntry* member) override
    {
        operations << QStringLiteral("notice %1.%2")
                          .arg(name, QString::fromStdU16String(static_cast<const FakeMember*>(member)->name));
    }

    KResult CreateSettled(JSPromiseState state, const JSContextEnv& context,
        const std::function<void(KJSVariant&)>& fill, KJSVariant& out) override
    {
        KJSVariant text;
        fill(text);
        operations << QStringLiteral("settled %1 %2 %3")
                          .arg(static_cast<int>(state))
                          .arg(context.contextId)
                          .arg(QString::fromStdU16String(std::u16string(text.text())));
        out = KJSVariant::fromInt32(5);
        return KR_OK;
    }
    std::int64_t CreatePending(const JSContextEnv&, KJSVariant&) override { return 0; }
    bool IsPending(std::int64_t, const JSContextEnv&) const override { return false; }

    IJSEventHub* ClassHub(std::int32_t typeId) override
    {
        operations << QStringLiteral("hub %1").arg(typeId);
        return &hub;
    }
    IJSEventHub* InstanceHub(std::int32_t, IJSExtentionObject*) override
    {
        instanceHubs.push_back(std::make_unique<FakeHub>());
        return instanceHubs.back().get();
    }
    void ReleaseInstanceHub(IJSEventHub* released) override
    {
        std::erase_if(instanceHubs, [&](const auto& known) { return known.get() == released; });
    }

    void RegisterClass(const QString& name, Creator creator) override { creators[name] = creator; }
    void UnregisterClass(const QString& name) override { creators.remove(name); }
    IJSExtentionObject* Create(const QString& name, const JSContextEnv&, IJSONValue*) override
    {
        IJSCreatable* creatable = nullptr;
        const Creator creator = creators.value(name);
        return creator ? creator(&creatable) : nullptr;
    }

    QStringList takeOperations() { return std::exchange(operations, {}); }

    QStringList operations;
    std::vector<IJSExtentionObject*> bound;
    FakeHub hub;
    std::vector<std::unique_ptr<FakeHub>> instanceHubs;
    static inline QMap<QString, Creator> creators; // a class announces its makers once in the process
    FakeBrowser browser;
    int added = 0;
    bool tracing = false;
    bool filtering = false;
    static inline std::int32_t nextTypeId = 100;
};
