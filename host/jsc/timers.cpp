#include "host/jsc/timers.h"

#include "host/jsc/pagestate.h"

#include <QCoreApplication>
#include <QTimerEvent>
#include <limits>

namespace engine::jsc {

namespace {

int milliseconds(double delay, int least)
{
    if (!(delay > least))
        return least;
    return delay >= std::numeric_limits<int>::max() ? std::numeric_limits<int>::max()
                                                    : static_cast<int>(delay);
}

} // namespace

int Timers::start(JSObjectRef callback, double delay, bool repeats, Owner owner)
{
    if (m_timers.size() >= maximumCount)
        return 0;
    const int interval = milliseconds(delay, repeats ? minimumInterval : minimumDelay);
    const int id = startTimer(interval, Qt::PreciseTimer);
    JSValueProtect(m_page.ctx(), callback);
    m_timers.emplace(id, Timer { callback, repeats, owner });
    m_ofScript += owner == Owner::Script ? 1 : 0;
    return id;
}

void Timers::cancel(int timer)
{
    const auto found = m_timers.find(timer);
    if (found == m_timers.end())
        return;
    killTimer(timer);
    JSValueUnprotect(m_page.ctx(), found->second.callback);
    m_ofScript -= found->second.owner == Owner::Script ? 1 : 0;
    m_timers.erase(found);
}

void Timers::stop()
{
    while (!m_timers.empty())
        cancel(m_timers.begin()->first);
}

void Timers::addPending(PendingList& list) const
{
    for (const auto& [id, timer] : m_timers) {
        if (timer.owner == Owner::Script)
            list.push_back({ Pending::Kind::Timer, {}, {}, timer.since });
    }
}

void Timers::timerEvent(QTimerEvent* event)
{
    // A native call of the page runs a nested event loop: the page, and so the timer, must wait for its end.
    if (!m_page.isLive() || m_page.depth() > 0)
        return;
    const auto found = m_timers.find(event->timerId());
    if (found == m_timers.end())
        return;
    std::shared_ptr<PageState> keep = m_page.shared_from_this();
    {
        // Copied to the stack: the callback may cancel its own timer.
        JSObjectRef callback = found->second.callback;
        const Entry entry(m_page);
        if (!found->second.repeats)
            cancel(event->timerId());
        JSValueRef exception = nullptr;
        JSObjectCallAsFunction(m_page.ctx(), callback, nullptr, 0, nullptr, &exception);
        if (exception)
            m_page.reportThrown(exception, QStringLiteral("in a timer"));
    }
    // This object is part of the page, which may be destroyed when Entry releases it.
    if (keep.use_count() == 1)
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [keep = std::move(keep)] {}, Qt::QueuedConnection);
}

} // namespace engine::jsc
