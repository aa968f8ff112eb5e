// A JS core for direct calls into the library: it keeps what it is given and notes every operation.
#pragma once

#include "vexlite/jscore.h"
#include "vexlite/jsmemberlist.h"

#include <QStringList>
#include <cstdarg>
#include <gtest/gtest.h>

namespace support {

struct FakeMember final : JSMemberEntry {
    std::u16string name;
    std::int32_t kind = 0;
};

/// A published table.
class FakeMemberList final : public IJSMemberList {
public:
    explicit FakeMemberList(JSMemberTable entries)
        : m_table(std::move(entries))
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
    std::int32_t Count() const override { return static_cast<std::int32_t>(m_table.size()); }
    std::int32_t Id(std::int32_t index) const override { return index; }
    const char16_t* Name(std::int32_t index) const override { return member(index).name.c_str(); }
    std::int32_t Kind(std::int32_t index) const override { return member(index).kind; }
    std::uint32_t Mask(std::int32_t) const override { return 0; }
    std::int32_t ResultType(std::int32_t) const override { return 0; }
    std::int32_t ParameterCount(std::int32_t) const override { return 0; }
    JSParameter Parameter(std::int32_t, std::int32_t) const override { return {}; }
    JSMemberInvoke Invoke(std::int32_t index) const override { return member(index).invoke; }

private:
    virtual ~FakeMemberList() = default;
    const FakeMember& member(std::int32_t id) const
    {
        return static_cast<const FakeMember&>(*m_table.at(id));
    }
    const JSMemberTable m_table;
    std::uint32_t m_references = 1;
};

class FakeCore final : public IVEXJSCore,
                       public IJSTypeIdAllocator,
                       public IJSRegistry,
                       public IJSTraceHook,
                       public IJSEventHubFactory,
                       public IJSEventHub {
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
    IJSPromiseService* PromiseService() override { return nullptr; }
    IJSAnswerChannel* AnswerChannel() override { return nullptr; }
    IJSEventHubFactory* EventHubs() override { return this; }
    IJSObjectFactory* Objects() override { return nullptr; }
    IVEXBrowser* Browser(std::int64_t) override { return nullptr; }

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
        const bool fits = found != table.end()
            && static_cast<const FakeMember&>(*found->second).kind == static_cast<int>(access);
        return fits ? found->second.get() : nullptr;
    }
    void AddMember(JSMemberTable& table, const char16_t* name, std::int32_t kind, std::uint32_t,
        std::int32_t type, ...) override
    {
        const auto member = std::make_shared<FakeMember>();
        member->name = name;
        member->kind = kind;
        va_list rest;
        va_start(rest, type);
        member->invoke = va_arg(rest, JSMemberInvoke);
        va_end(rest);
        table.emplace(static_cast<std::int32_t>(table.size()), member);
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
        operations << QStringLiteral("notice %1.").arg(name)
                + QString::fromStdU16String(static_cast<const FakeMember*>(member)->name);
    }

    IJSEventHub* ClassHub(std::int32_t) override { return operations << QStringLiteral("hub"), this; }
    IJSEventHub* InstanceHub(std::int32_t, IJSExtentionObject*) override { return this; }
    void ReleaseInstanceHub(IJSEventHub*) override { }
    KResult Add(const QString& event, const JSContextEnv&, const KJSVariant&) override
    {
        return operations << QStringLiteral("add ") + event, hubStatus;
    }
    KResult Remove(const QString& event, const JSContextEnv&, const KJSVariant& callback) override
    {
        return operations << QStringLiteral("remove %1 %2").arg(event).arg(callback.type()), hubStatus;
    }
    KResult Dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) override
    {
        operations
            << QStringLiteral("dispatch %1 %2 %3").arg(event).arg(target.contextId).arg(payload.size());
        return hubStatus;
    }
    KResult Report(KJSVariant& result) override { return result = KJSVariant::fromInt32(27), hubStatus; }

    /// What was done since the last call.
    std::string takeOperations()
    {
        return std::exchange(operations, {}).join(QStringLiteral(", ")).toStdString();
    }

    QStringList operations;
    std::vector<IJSExtentionObject*> bound;
    KResult hubStatus = KR_OK;
    bool tracing = false;
    bool filtering = false;
    static inline std::int32_t nextTypeId = 100;
};

} // namespace support
