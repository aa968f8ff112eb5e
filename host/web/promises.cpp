#include "host/web/promises.h"

#include "host/vexlite/scriptvalues.h"
#include "host/web/frame.h"
#include "host/web/towire.h"

namespace engine::web {

namespace {

WireWriter settledMessage(std::int64_t promise, bool isResolved)
{
    WireWriter message;
    message.unit('s');
    message.count(static_cast<std::uint64_t>(promise));
    message.unit(isResolved ? 'r' : 'e');
    return message;
}

} // namespace

bool Promises::create(std::int64_t promise, const QString& member)
{
    return m_states.try_emplace(promise, State { member }).second;
}

void Promises::settle(std::int64_t promise, JSPromiseState state, const KJSVariant& value)
{
    const auto found = m_states.find(promise);
    if (found == m_states.end() || std::exchange(found->second.isSettled, true))
        return;
    if (found->second.isReleased)
        m_states.erase(found);
    WireWriter message = settledMessage(promise, state == JSPromiseState::Resolved);
    ToWire toWire(m_frame, QStringLiteral("NovaExtension"));
    if (!toWire.write(message, value.raw())) {
        message = settledMessage(promise, false);
        ToWire(m_frame, QString())
            .write(message, vexlite::makeFailure(OperationFailed, toWire.problem()).raw());
    }
    m_frame.queue(message.take());
}

void Promises::release(std::int64_t promise)
{
    const auto found = m_states.find(promise);
    if (found == m_states.end())
        return;
    found->second.isReleased = true;
    if (found->second.isSettled)
        m_states.erase(found);
    WireWriter message;
    message.unit('p');
    message.count(static_cast<std::uint64_t>(promise));
    m_frame.queueLater(message.take());
}

bool Promises::anyPending() const
{
    return std::any_of(
        m_states.begin(), m_states.end(), [](const auto& one) { return !one.second.isSettled; });
}

void Promises::addPending(PendingList& list) const
{
    for (const auto& [promise, state] : m_states) {
        if (!state.isSettled)
            list.push_back({ Pending::Kind::Promise, state.member, {}, state.since });
    }
}

} // namespace engine::web
