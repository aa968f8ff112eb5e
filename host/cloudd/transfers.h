// The uploads: recorded first, then run a few at a time, and restarted when the service starts again.
//
//     Store::Transaction transaction(store);
//     transfers.record(tasks);
//     transaction.commit();
//     transfers.start(tasks, ended);              // `ended` is called once for each
#pragma once

#include "host/cloudd/contents.h"
#include "host/cloudd/jobqueue.h"
#include "host/cloudd/localplaces.h"
#include "host/cloudd/service.h"
#include "host/cloudd/store.h"
#include "host/cloudd/uploadrule.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>

namespace cloudd {

/// Limits bytes a second, on the average.
class Throttle {
public:
    /// 0: no limit.
    explicit Throttle(qint64 bytesPerSecond);

    /// Bytes that may be transferred now; 0 also for a number too small to be worth a step.
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

    Transfers(Store& store, Contents& contents, const LocalPlaces& places, const Settings& settings);
    /// Starts all recorded tasks that have not ended.
    void resume();

    /// Throws Error(Busy), and records nothing, when more than 10,000 would be under way.
    void record(const std::vector<Task>& tasks);
    void start(const std::vector<Task>& tasks, const Ended& ended = {});
    /// A user's task, as it is now. Throws Error(NotFound).
    Task findTask(const QString& userId, const QString& id);
    /// Does nothing to a task that has ended. Throws Error(NotFound).
    void cancel(const QString& userId, const QString& id);
    bool isBusy() const { return m_queue.size() > 0; }
    /// Whether the suite lets the user upload this file.
    bool permits(const QString& userId, const Descriptor& file) const;
    /// The same for a name in an open folder, where nothing needs to be.
    bool permits(const QString& userId, const Descriptor& folder, const QByteArray& name) const;
    /// What all uploads share.
    Throttle& throttle() { return m_throttle; }
    /// Removes a content that no file has any more.
    void removeUnused(const QString& sha256);
    /// The path of its file, or the one the file will have.
    QString cloudPath(const Task& task);

Q_SIGNALS:
    void notice(const QString& userId, const QMap<QString, QString>& actions);
    void idle();

private:
    class Run;

    /// Records the end, then emits the notice. When recording throws, the task is still under way.
    void end(Run& run, const Task& task);
    void emitNotice(const Task& task, const char* status);
    /// Adds the file to its folder.
    void finish(Run& run, Task task);

    Store& m_store;
    Contents& m_contents;
    const LocalPlaces& m_places;
    UploadRule m_rule;
    Throttle m_throttle;
    JobQueue m_queue;
    QHash<QString, std::shared_ptr<Run>> m_runs; ///< under way, by task id
};

} // namespace cloudd
