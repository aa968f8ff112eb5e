// Long work in slices from the event loop: a few jobs take turns, the rest wait in order.
//
//     rounds.add(std::make_shared<Sync>(...));       // its step() is called from the event loop until it
//     says Ended
#pragma once

#include <QTimer>
#include <deque>
#include <memory>

namespace cloudd {

class Job {
public:
    enum class Step {
        Again,
        Later, ///< there is nothing to do for some milliseconds
        Ended,
    };

    virtual ~Job() = default;
    /// Some milliseconds of work. Throws nothing. May add and remove jobs, itself as well.
    virtual Step step() = 0;
};

class Rounds : public QObject {
    Q_OBJECT
public:
    Rounds();

    void add(std::shared_ptr<Job> job);
    /// It is not stepped any more.
    void remove(const Job* job);
    int size() const { return static_cast<int>(m_running.size() + m_waiting.size()); }

Q_SIGNALS:
    /// The last job has ended or was removed; from within that call.
    void idle();

private:
    void turn();
    void fill();

    std::deque<std::shared_ptr<Job>> m_running; ///< the first one has not worked for longest
    std::deque<std::shared_ptr<Job>> m_waiting;
    size_t m_asked = 0; ///< so many from the first have said Later since one has worked
    QTimer m_next;
};

} // namespace cloudd
