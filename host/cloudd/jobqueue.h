// A job queue on the event loop: a few jobs run by turns, a slice of work each; the others wait in order.
//
//     queue.add(std::make_shared<SyncJob>(...));    // step() is called until it returns Ended
#pragma once

#include <QTimer>
#include <deque>
#include <memory>

namespace cloudd {

class Job {
public:
    enum class Step {
        Again,
        Later, ///< nothing to do for some milliseconds
        Ended,
    };

    virtual ~Job() = default;
    /// Does some milliseconds of work. Must not throw. May add and remove jobs, including this one.
    virtual Step step() = 0;
};

class JobQueue : public QObject {
    Q_OBJECT
public:
    JobQueue();

    void add(std::shared_ptr<Job> job);
    /// Its step() is not called any more.
    void remove(const Job* job);
    int size() const { return static_cast<int>(m_running.size() + m_waiting.size()); }

Q_SIGNALS:
    /// The last job has ended or was removed. Emitted within that call.
    void idle();

private:
    void runNext();
    void startWaiting();

    std::deque<std::shared_ptr<Job>> m_running; ///< the one that has waited longest for its turn is first
    std::deque<std::shared_ptr<Job>> m_waiting;
    size_t m_idleCount = 0; ///< jobs at the front that have returned Later since the last Again
    QTimer m_next;
};

} // namespace cloudd
