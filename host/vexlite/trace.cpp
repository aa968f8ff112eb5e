#include "host/vexlite/trace.h"

#include "host/vexlite/conversion.h"
#include "host/vexlite/memberrecord.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/pagefunction.h"
#include "host/vexlite/scriptvalues.h"

#include <algorithm>

namespace vexlite {

Failure failureOf(const KJSVariant& exception)
{
    constexpr std::int32_t OperationFailed = 3;
    const IJSONValue* failure = objectOf(exception);
    if (!failure)
        return { OperationFailed, textOf(exception) };
    return { failure->GetInt32(QStringLiteral("code"), OperationFailed),
        failure->GetString(QStringLiteral("msg"), {}) };
}

namespace {

/// Gives the functions in a value their numbers while those that native code may let go during a call are still there.
void numberFunctions(const KJSVariant& value, int depth = 0)
{
    constexpr int Deepest = 2;
    if (const auto function = queryInterface<IJSFunction>(value, IID_IJSFunction)) {
        if (auto* ours = dynamic_cast<PageFunction*>(function.get()))
            ours->number();
    }
    const QString* key = nullptr;
    const KJSVariant* inner = nullptr;
    const IJSONValue* object = depth < Deepest ? objectOf(value) : nullptr;
    for (std::int32_t i = 0; object && object->At(i, &key, &inner); ++i)
        numberFunctions(*inner, depth + 1);
}

} // namespace

CallTrace::~CallTrace()
{
    if (s_active == this)
        s_active = nullptr;
}

void CallTrace::add(Observer* observer)
{
    m_observers.push_back(observer);
    s_active = this;
}

void CallTrace::remove(Observer* observer)
{
    std::erase(m_observers, observer);
    if (m_observers.empty() && s_active == this)
        s_active = nullptr;
}

/// Reports to the observers that there are, but to none that another one removes meanwhile.
template <typename Report> void CallTrace::each(Report report)
{
    const std::vector<Observer*> observers = m_observers;
    for (Observer* observer : observers) {
        if (std::ranges::find(m_observers, observer) != m_observers.end())
            report(*observer);
    }
}

CallFacts CallTrace::describe(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id,
    JSAccess access, const JSApiArguments& arguments) const
{
    const std::int64_t typeId = object->GetTypeId();
    return { 0, innermost(), context, m_names.nameOf(typeId), m_names.instanceOf(object),
        m_names.memberName(typeId, id), access != JSAccess::Method, arguments, Clock::now() };
}

KResult CallTrace::trace(
    CallFacts call, const KJSVariant& result, const KJSVariant& exception, const Invoke& invoke)
{
    call.id = ++m_lastCall;
    for (const KJSVariant& argument : call.arguments)
        numberFunctions(argument);
    each([&](Observer& observer) { observer.callBegan(call); });
    ActiveCall active { m_innermost, call };
    m_innermost = &active;
    const KResult status = invoke(reinterpret_cast<std::int64_t>(&active));
    m_innermost = active.outer;
    const CallOutcome outcome { active.end == TraceTime {} ? Clock::now() : active.end, result, exception };
    each([&](Observer& observer) { observer.callEnded(call, outcome); });
    for (const auto& settled : active.settled)
        each([&](Observer& observer) { observer.promiseSettled(settled->promise); });
    return status;
}

CallTrace::Caller CallTrace::caller() const
{
    if (!m_innermost)
        return {};
    const CallFacts& call = m_innermost->facts;
    return { call.id, call.object, call.member };
}

void CallTrace::reportSettled(const JSContextEnv& context, std::int64_t promise, const Caller& caller,
    JSPromiseState state, const KJSVariant& value)
{
    if (!isTracing())
        return;
    const SettledPromise settled { promise, context, caller.object, caller.member, Clock::now(), state,
        value };
    for (ActiveCall* call = m_innermost; call; call = call->outer) {
        if (call->facts.id == caller.call) {
            call->settled.push_back(std::make_unique<Settlement>(settled));
            return;
        }
    }
    each([&](Observer& observer) { observer.promiseSettled(settled); });
}

void CallTrace::reportPage(const JSContextEnv& context, const QString& origin)
{
    each([&](Observer& observer) { observer.pageOpened(context, origin); });
}

void CallTrace::reportStep(const QString& step)
{
    each([&](Observer& observer) { observer.stepPlayed(step); });
}

KResult CallTrace::traceFunction(const JSContextEnv& context, std::int64_t function,
    const JSApiArguments& arguments, const std::function<KResult()>& call)
{
    const FunctionFacts facts { innermost(), context, function, arguments, Clock::now() };
    each([&](Observer& observer) { observer.functionBegan(facts); });
    const KResult status = call();
    // The page may have ended the core meanwhile.
    if (s_active == this)
        each([&](Observer& observer) { observer.functionEnded(facts, Clock::now()); });
    return status;
}

void CallTrace::Emission::report(const JSContextEnv& context)
{
    const auto isOfPage = [&](const EventFacts& event) { return event.context == context; };
    if (std::ranges::any_of(m_reported, isOfPage))
        return;
    if (!s_active)
        return;
    CallTrace& trace = *s_active;
    const bool isFirst = m_reported.empty();
    m_reported.push_back({ trace.innermost(), context, trace.m_names.nameOf(m_typeId),
        isFirst ? trace.m_names.instanceOf(m_object) : m_reported.front().instance,
        isFirst ? makeOwnedText(m_event) : m_reported.front().event, m_arguments, Clock::now() });
    trace.each([&](Observer& observer) { observer.eventBegan(m_reported.back()); });
}

CallTrace::Emission::~Emission()
{
    for (const EventFacts& event : m_reported) {
        if (s_active)
            s_active->each([&](Observer& observer) { observer.eventEnded(event); });
    }
}

void CallTrace::recordEnd(const JSContextEnv& context, std::int64_t extra)
{
    if (m_innermost && extra == reinterpret_cast<std::int64_t>(m_innermost)
        && m_innermost->facts.context == context)
        m_innermost->end = Clock::now();
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
    if (!m_innermost || std::exchange(m_innermost->isNoticed, true)
        || !(m_innermost->facts.context == context))
        return;
    m_innermost->facts.object = makeOwnedText(objectName);
    m_innermost->facts.member = member ? MemberRecord::of(*member).nameText() : QString();
}

} // namespace vexlite
