// Timers: setTimeout and setInterval of one page, and the receiver of its queued calls.
#pragma once

#include "host/engine/pending.h"
#include "host/jsc/api.h"

#include <QObject>
#include <unordered_map>

namespace engine::jsc {

class PageState;

/// [GUI thread]
class Timers final : public QObject {
public:
    /// The limit of timers at a time.
    static constexpr int maximumCount = 10000;
    /// The shortest interval in milliseconds.
    static constexpr int minimumInterval = 4;
    static constexpr int minimumDelay = 1;

    explicit Timers(PageState& page)
        : m_page(page)
    {
    }

    /// What script itself has begun is pending until it has ended; what the page has begun for it, such as the timer of a
    /// signal, is not.
    enum class Owner { Script, Page };
    /// Calls `callback` after `delay` milliseconds, repeatedly if `repeats`. Returns the timer's number, or 0
    /// when there are too many.
    int start(JSObjectRef callback, double delay, bool repeats, Owner owner);
    void cancel(int timer);
    /// Stops all timers.
    void stop();
    QObject* mailbox() { return this; }
    /// Whether script has any.
    bool any() const { return m_ofScript > 0; }
    void addPending(PendingList& list) const;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Timer {
        JSObjectRef callback;
        bool repeats;
        Owner owner;
        Pending::Clock::time_point since = Pending::Clock::now();
    };
    PageState& m_page;
    std::unordered_map<int, Timer> m_timers;
    int m_ofScript = 0;
};

} // namespace engine::jsc
