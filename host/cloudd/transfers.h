// The uploads: recorded first, then run a few at a time, and begun anew after a restart.
//
//     Store::Transaction transaction(store);
//     transfers.record(tasks);
//     transaction.commit();
//     transfers.start(tasks, ended);              // `ended` is called once for each
#pragma once

#include "host/cloudd/contents.h"
#include "host/cloudd/rounds.h"
#include "host/cloudd/store.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>

namespace cloudd {

/// How many bytes may pass now, so that it is so many a second on the average.
class Throttle {
public:
    /// 0: as many as there are.
    explicit Throttle(qint64 bytesPerSecond);

    /// 0 as well when they are not worth the effort yet.
    qint64 available();
    void spend(qint64 bytes) { m_available -= static_cast<double>(bytes); }

private:
    double m_bytesPerSecond;
    double m_available = 0;
    QElapsedTimer m_since;
};

class Transfers : public QObject {
    Q_OBJECT
public:
    using Ended = std::function<void(const Task&)>;

    Transfers(Store& store, Contents& contents, qint64 bytesPerSecond);
    /// Starts what the records say has not ended.
    void resume();

    /// Throws Refusal(Busy) when that would be more than 10,000 that have not ended, and records nothing
    /// then.
    void record(const std::vector<Task>& tasks);
    void start(const std::vector<Task>& tasks, const Ended& ended = {});
    /// Of a user's task, as it is now. Throws Refusal(NotFound).
    Task task(const QString& userId, const QString& id);
    /// One that has ended stays as it is. Throws Refusal(NotFound).
    void cancel(const QString& userId, const QString& id);
    bool isBusy() const { return m_rounds.size() > 0; }
    /// Where its file is, or is going to be.
    QString cloudPath(const Task& task);

Q_SIGNALS:
    void notice(const QString& userId, const QMap<QString, QString>& actions);
    void idle();

private:
    class Run;

    /// Records the end, and only then tells of it. Throws when it can not be recorded: it has not ended then.
    void end(Run& run, const Task& task);
    void tell(const Task& task, const char* status);
    /// Gives the content its name in the folder.
    void finish(Run& run, Task task);
    void removeUnnamed(const QString& sha256);

    Store& m_store;
    Contents& m_contents;
    Throttle m_throttle;
    Rounds m_rounds;
    QHash<QString, std::shared_ptr<Run>> m_runs; ///< those that have not ended, by their ids
};

} // namespace cloudd
