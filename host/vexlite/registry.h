// Registry: binds objects to pages and fills member tables.
#pragma once

#include "host/vexlite/pages.h"

namespace vexlite {

class CallTrace;

class Registry final : public IJSRegistry {
public:
    /// One call of a factory, during which an object may be bound with its two creation values. Calls nest.
    class PendingBind {
    public:
        PendingBind(Registry& registry, const JSContextEnv& context);
        ~PendingBind() { m_registry.m_pending = m_outer; }
        PendingBind(const PendingBind&) = delete;
        PendingBind& operator=(const PendingBind&) = delete;

        std::int64_t creationContext() const { return m_context.contextId; }
        std::int64_t creationTarget() const { return m_target; }
        /// The bound object, or null.
        Ref<IJSExtentionObject> take() { return std::exchange(m_object, {}); }

    private:
        friend class Registry;

        Registry& m_registry;
        PendingBind* m_outer;
        JSContextEnv m_context;
        std::int64_t m_target;
        Ref<IJSExtentionObject> m_object;
        bool m_bound = false;
    };

    Registry(const Pages& pages, CallTrace& trace)
        : m_pages(pages)
        , m_trace(trace)
    {
    }

    /// KR_NOT_AVAILABLE also for a second object with the same values.
    KResult Bind(IJSExtentionObject* object, std::int64_t creationContext, std::int64_t creationTarget,
        std::int64_t zero) override;
    void CallCompleted(const JSContextEnv& context, KJSVariant& value, std::int64_t extra) override;
    /// Appends to a table that has members, with new ids.
    void AssignTable(JSMemberTable& source, JSMemberTable& destination) override;
    KResult PublishTable(const JSMemberTable& table, IJSMemberList** out) override;
    const JSMemberEntry* FindMember(const JSMemberTable& table, std::int32_t id, JSAccess access) override;
    /// Ids count from 0 in the order of registration. A wrong member (no name or a duplicate one, no handler,
    /// an unknown kind, too many parameters) is not added but logged.
    void AddMember(JSMemberTable& table, const char16_t* name, std::int32_t kind, std::uint32_t mask,
        std::int32_t resultType, ...) override;
    /// A number that identifies the object and is never reused, so that a page has one wrapper for it,
    /// wherever it comes from. It is stored as the object's host pointer. 0 for null.
    std::int64_t SubObjectToken(IJSExtentionObject* object) override;

private:
    const Pages& m_pages;
    CallTrace& m_trace;
    PendingBind* m_pending = nullptr; ///< the innermost
};

/// The number that identifies an object: see Registry::SubObjectToken().
std::int64_t numberOf(IJSExtentionObject* object);

} // namespace vexlite
