#include "host/cloudd/transfers.h"

#include "host/cloudd/slice.h"
#include "host/cloudd/upload.h"

#include <QDeadlineTimer>
#include <QFile>

namespace cloudd {

namespace {

constexpr int MaxUnfinished = 10'000;
/// The part of a second's bytes that may be transferred at once.
constexpr double Burst = 0.1;
/// Delay before an end that could not be recorded is recorded again.
constexpr int RetryMs = 100;

} // namespace

Throttle::Throttle(qint64 bytesPerSecond)
    : m_bytesPerSecond(static_cast<double>(bytesPerSecond))
{
    m_since.start();
}

qint64 Throttle::available()
{
    if (m_bytesPerSecond <= 0)
        return SliceBytes;
    m_available += m_bytesPerSecond * static_cast<double>(m_since.nsecsElapsed()) / 1e9;
    m_since.restart();
    const double most = qMax(1.0, m_bytesPerSecond * Burst);
    m_available = qMin(m_available, most);
    return m_available >= qBound(1.0, most / 4, double(SliceBytes)) ? static_cast<qint64>(m_available) : 0;
}

class Transfers::Run final : public Job {
public:
    Run(Transfers& transfers, Task task, Ended ended)
        : task(std::move(task))
        , ended(std::move(ended))
        , m_transfers(transfers)
    {
    }

    Step step() override
    {
        try {
            return m_outcome ? record() : copy();
        } catch (const Error& error) {
            // Without an outcome the upload has failed; with one, its recording has.
            if (!m_outcome) {
                fail(error.state);
                return Step::Again;
            }
            m_retry.setRemainingTime(RetryMs);
            return Step::Later;
        }
    }

    Task task; ///< as it is now
    Ended ended;

private:
    Step copy()
    {
        if (!m_upload) {
            task.status = TaskStatus::Running;
            m_upload = std::make_unique<Upload>(m_transfers.m_contents, QFile::encodeName(task.source),
                [this](const Descriptor& file) { return m_transfers.permits(task.userId, file); });
            m_transfers.emitNotice(task, "syncing");
            return Step::Again;
        }
        if (!m_upload->prepare())
            return Step::Later;
        const qint64 available = m_transfers.m_throttle.available();
        if (available < 1)
            return Step::Later;
        const qint64 before = m_upload->transferred();
        const bool more = m_upload->step(available);
        task.total = m_upload->total();
        task.transferred = m_upload->transferred();
        m_transfers.m_throttle.spend(task.transferred - before);
        if (more)
            return Step::Again;
        task.sha256 = m_upload->sha256();
        m_transfers.finish(*this, task);
        return Step::Ended;
    }

    void fail(State state)
    {
        // The content may be stored already, while no file has it.
        if (m_upload)
            m_transfers.removeUnused(m_upload->sha256());
        m_upload.reset();
        m_outcome = task;
        m_outcome->status = TaskStatus::Failed;
        m_outcome->state = state;
        m_outcome->sha256.clear();
    }

    Step record()
    {
        if (!m_retry.hasExpired())
            return Step::Later;
        m_transfers.end(*this, *m_outcome);
        return Step::Ended;
    }

    Transfers& m_transfers;
    std::unique_ptr<Upload> m_upload;
    std::optional<Task> m_outcome; ///< a failure that has not been recorded yet
    QDeadlineTimer m_retry { 0 };
};

Transfers::Transfers(Store& store, Contents& contents, const LocalPlaces& places, const Settings& settings)
    : m_store(store)
    , m_contents(contents)
    , m_places(places)
    , m_rule(settings.closedToUploads, settings.openToUploads)
    , m_throttle(settings.uploadBytesPerSecond)
{
    connect(&m_queue, &JobQueue::idle, this, &Transfers::idle);
}

void Transfers::resume()
{
    start(m_store.listUnfinishedTasks());
}

void Transfers::record(const std::vector<Task>& tasks)
{
    if (m_runs.size() + tasks.size() > MaxUnfinished)
        throw Error(State::Busy);
    for (const Task& task : tasks)
        m_store.add(task);
}

void Transfers::start(const std::vector<Task>& tasks, const Ended& ended)
{
    for (const Task& task : tasks) {
        const auto run = std::make_shared<Run>(*this, task, ended);
        m_runs.insert(task.id, run);
        m_queue.add(run);
    }
}

Task Transfers::findTask(const QString& userId, const QString& id)
{
    const auto run = m_runs.value(id);
    if (run && run->task.userId == userId)
        return run->task;
    const auto recorded = m_store.findTask(userId, id);
    if (!recorded)
        throw Error(State::NotFound);
    return *recorded;
}

void Transfers::cancel(const QString& userId, const QString& id)
{
    Task cancelled = findTask(userId, id);
    const auto run = m_runs.value(id);
    if (!run)
        return;
    cancelled.status = TaskStatus::Cancelled;
    cancelled.state = State::Cancelled;
    end(*run, cancelled);
}

void Transfers::finish(Run& run, Task task)
{
    Store::Transaction transaction(m_store);
    const Item folder = m_store.findItemById(task.folderId);
    const QString name = task.autoRename ? m_store.findFreeName(folder, task.name) : task.name;
    const auto replaced = m_store.findChild(folder.id, name);
    task.itemId = m_store.putFile(folder, name, task.total, task.sha256).id;
    task.status = TaskStatus::Finished;
    m_store.recordEnd(task);
    transaction.commit();
    if (replaced)
        removeUnused(replaced->sha256);
    end(run, task);
}

bool Transfers::permits(const QString& userId, const Descriptor& file) const
{
    // The user's own documents are open, in the middle of the suite's records.
    return m_rule.permits(file, m_places.documentsPath(userId, {}));
}

bool Transfers::permits(const QString& userId, const Descriptor& folder, const QByteArray& name) const
{
    return m_rule.permits(folder, name, m_places.documentsPath(userId, {}));
}

void Transfers::removeUnused(const QString& sha256)
{
    try {
        if (!m_store.isContentUsed(sha256))
            m_contents.remove(sha256);
    } catch (const Error&) {
        // sweep() removes it when the service starts again.
    }
}

void Transfers::end(Run& run, const Task& task)
{
    if (task.status != TaskStatus::Finished)
        m_store.recordEnd(task);
    // Removed first: receivers of the notice may query, cancel or start tasks.
    const auto kept = m_runs.take(task.id);
    run.task = task;
    emitNotice(task,
        task.status == TaskStatus::Finished        ? "synced"
            : task.status == TaskStatus::Cancelled ? "cancelled"
                                                   : "failed");
    if (run.ended)
        run.ended(task);
    m_queue.remove(&run);
}

QString Transfers::cloudPath(const Task& task)
{
    try {
        if (!task.itemId.isEmpty())
            return m_store.findPath(m_store.findItemById(task.itemId));
    } catch (const Error& error) {
        // The file has been removed meanwhile.
        if (error.state != State::NotFound)
            throw;
    }
    const QString folder = m_store.findPath(m_store.findItemById(task.folderId));
    return folder.isEmpty() ? task.name : folder + QLatin1Char('/') + task.name;
}

void Transfers::emitNotice(const Task& task, const char* status)
{
    const auto key = [](const char* name) { return QString::fromLatin1(name); };
    QString path = task.name;
    try {
        path = cloudPath(task);
    } catch (const Error&) {
        // The notice is sent with the name alone.
    }
    Q_EMIT notice(task.userId,
        { { key("action"), key("docCloudSyncStatus") }, { key("fileId"), task.itemId },
            { key("cloudPath"), path }, { key("localPath"), task.source }, { key("status"), key(status) },
            { key("taskId"), task.id } });
}

} // namespace cloudd
