#include "host/vexlite/trace.h"

#include "host/vexlite/memberrecord.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/scriptvalues.h"

namespace vexlite {

void CallTrace::setTracer(Tracer tracer)
{
    m_tracer = tracer ? std::make_shared<const Tracer>(std::move(tracer)) : nullptr;
}

KResult CallTrace::trace(const JSContextEnv& context, const KJSVariant& exception, const Invoke& invoke)
{
    const std::shared_ptr<const Tracer> tracer = m_tracer;
    ActiveCall call { m_innermost, context, {}, {}, Clock::now(), {} };
    m_innermost = &call;
    const KResult status = invoke(reinterpret_cast<std::int64_t>(&call));
    m_innermost = call.outer;
    if (call.end == Clock::time_point {})
        call.end = Clock::now();

    const IJSONValue* failure = objectOf(exception);
    const auto time = std::chrono::duration_cast<std::chrono::nanoseconds>(call.end - call.start);
    (*tracer)({ call.object, call.member, time.count(), status == KR_OK,
        status != KR_OK && failure ? failure->GetString(QStringLiteral("msg"), {}) : QString(),
        status != KR_OK && failure ? failure->GetInt32(QStringLiteral("code"), 0) : 0 });
    return status;
}

void CallTrace::reportRejection(const Caller& caller, std::int32_t code, const QString& message)
{
    if (const std::shared_ptr<const Tracer> tracer = m_tracer; tracer && !caller.object.isNull())
        (*tracer)({ caller.object, caller.member, 0, false, message, code, true });
}

bool CallTrace::FilterTable(
    const QString&, const JSContextEnv&, const JSMemberTable& table, JSMemberTable& replacement)
{
    if (!m_denyMask)
        return false;
    for (const auto& entry : table) {
        if (!(MemberRecord::of(*entry.second).mask & m_denyMask))
            replacement.insert(entry);
    }
    return true;
}

void CallTrace::CallNotice(
    const QString& objectName, const JSContextEnv& context, const JSMemberEntry* member)
{
    // The first notice belongs to the call; further ones come from calls that native code makes within it.
    if (!m_innermost || !m_innermost->object.isNull() || !(m_innermost->context == context))
        return;
    m_innermost->object = objectName.isNull() ? QStringLiteral("") : makeOwnedText(objectName);
    m_innermost->member = member ? MemberRecord::of(*member).nameText() : QString();
}

} // namespace vexlite
