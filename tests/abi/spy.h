// Spy: what the library asks of the JS core, and what it does to its registry.
#pragma once

#include "host/vexlite/core.h"

#include <QStringList>
#include <cstdarg>
#include <gtest/gtest.h>

/// The stand-in's JS core, with a note of what the library does to its registry.
class Spy final : public IVEXJSCore, public IJSRegistry {
public:
    static Spy* instance()
    {
        static Spy spy;
        spy.m_core = dynamic_cast<IVEXJSCore*>(vexlite::Core::instance());
        return spy.m_core && !spy.isAbsent ? &spy : nullptr;
    }
    /// The services asked of the core since the last call.
    QStringList takeAsked()
    {
        m_asked.removeDuplicates();
        m_asked.sort();
        return std::exchange(m_asked, {});
    }
    std::string takeOperations() { return std::exchange(m_operations, {}).join(u',').toStdString(); }

    bool isAbsent = false; ///< a process without a JS core

    IJSTypeIdAllocator* TypeIds() override { return asked("type ids")->TypeIds(); }
    IJSRegistry* Registry() override { return asked("registry"), this; }
    IJSTraceHook* TraceHook() override { return asked("trace hook")->TraceHook(); }
    IJSPromiseService* PromiseService() override { return asked("promises")->PromiseService(); }
    IJSAnswerChannel* AnswerChannel() override { return asked("answers")->AnswerChannel(); }
    IJSEventHubFactory* EventHubs() override { return asked("hubs")->EventHubs(); }
    IJSObjectFactory* Objects() override { return asked("objects")->Objects(); }
    IVEXBrowser* Browser(std::int64_t id) override { return asked("browser")->Browser(id); }

    KResult Bind(
        IJSExtentionObject* object, std::int64_t context, std::int64_t target, std::int64_t zero) override
    {
        EXPECT_EQ(zero, 0);
        m_core->Registry()->Bind(object, context, target, zero);
        return 0x1234; // ignored by a factory
    }
    void CallCompleted(const JSContextEnv& context, KJSVariant& value, std::int64_t extra) override
    {
        m_operations << QStringLiteral("completed %1 %2").arg(value.type()).arg(extra);
        m_core->Registry()->CallCompleted(context, value, extra);
    }
    void AssignTable(JSMemberTable& source, JSMemberTable& destination) override
    {
        m_operations << QStringLiteral("assign");
        m_core->Registry()->AssignTable(source, destination);
    }
    KResult PublishTable(const JSMemberTable& table, IJSMemberList** out) override
    {
        m_operations << QStringLiteral("publish %1").arg(table.size());
        return m_core->Registry()->PublishTable(table, out);
    }
    const JSMemberEntry* FindMember(const JSMemberTable& table, std::int32_t id, JSAccess access) override
    {
        m_operations << QStringLiteral("find %1 %2").arg(id).arg(static_cast<int>(access));
        return m_core->Registry()->FindMember(table, id, access);
    }
    void AddMember(JSMemberTable& table, const char16_t* name, std::int32_t kind, std::uint32_t mask,
        std::int32_t type, ...) override
    {
        va_list rest;
        va_start(rest, type);
        const auto invoke = va_arg(rest, JSMemberInvoke);
        const int count = va_arg(rest, int);
        JSParameter given[3] {};
        for (int i = 0; i < count; ++i)
            given[i] = va_arg(rest, JSParameter);
        va_end(rest);
        EXPECT_TRUE(invoke && given[0].reserved + given[1].reserved + given[2].reserved == 0);
        m_core->Registry()->AddMember(
            table, name, kind, mask, type, invoke, count, given[0], given[1], given[2]);
    }
    std::int64_t SubObjectToken(IJSExtentionObject* object) override
    {
        return m_core->Registry()->SubObjectToken(object);
    }

private:
    IVEXJSCore* asked(const char* service)
    {
        m_asked << QString::fromLatin1(service);
        return m_core;
    }

    IVEXJSCore* m_core = nullptr;
    QStringList m_asked;
    QStringList m_operations;
};
