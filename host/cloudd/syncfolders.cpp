#include "host/cloudd/syncfolders.h"

#include "host/cloudd/localplaces.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

constexpr int MaxQueued = 100;

Descriptor openDirectory(const QString& path)
{
    return Descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool isWithin(const QString& path, const QString& folder)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

/// Where a path leads, without links; of one that is not there, where its parent folder does.
QString findTarget(const QString& path)
{
    const QFileInfo info(path);
    if (info.exists())
        return info.canonicalFilePath();
    const QString above = QFileInfo(info.path()).canonicalFilePath();
    return above.isEmpty() ? QString() : above + QLatin1Char('/') + info.fileName();
}

QByteArray readMarker(const Descriptor& folder)
{
    struct stat found { };
    const Descriptor file = openRegular(folder.get(), FolderSync::MarkerName, O_NOFOLLOW, found);
    QByteArray id(64, '\0');
    const qint64 count = file ? readSlice(file, id.data(), id.size()) : 0;
    return id.left(static_cast<int>(qMax<qint64>(0, count)));
}

bool isMarked(const Descriptor& there, const SyncFolder& folder)
{
    return there && readMarker(there) == folder.id.toLatin1();
}

} // namespace

SyncFolders::SyncFolders(
    Store& store, Contents& contents, Transfers& transfers, int intervalMs, IsSignedIn isSignedIn)
    : m_store(store)
    , m_contents(contents)
    , m_transfers(transfers)
    , m_records(store)
    , m_isSignedIn(std::move(isSignedIn))
{
    connect(&m_queue, &JobQueue::idle, this, &SyncFolders::idle);
    connect(&m_timer, &QTimer::timeout, this, &SyncFolders::syncAll);
    if (intervalMs > 0)
        m_timer.start(intervalMs);
}

const char* SyncFolders::checkPath(
    const QString& userId, const QString& path, const QString& exceptId, bool mayBeMissing)
{
    if (!path.startsWith(QLatin1Char('/')) || path.contains(QChar()) || QDir::cleanPath(path) != path)
        return "notAbsolute";
    if (path == QLatin1String("/"))
        return "root";
    const QFileInfo info(path);
    if (info.isSymLink())
        return "link";
    if (!info.exists() && !(mayBeMissing && QFileInfo(info.path()).isDir()))
        return "missing";
    if (info.exists() && !info.isDir())
        return "notFolder";
    const QString target = findTarget(path);
    if (isWithin(QDir::home().canonicalPath(), target))
        return "home";
    if (access(QFile::encodeName(info.exists() ? path : info.path()).constData(), W_OK | X_OK | R_OK) != 0)
        return "notWritable";
    for (const SyncFolder& other : m_records.listAll()) {
        const QString there = findTarget(other.localPath);
        if (other.id == exceptId || there.isEmpty())
            continue;
        if (isWithin(target, there))
            return "withinSyncFolder";
        if (isWithin(there, target))
            return "containsSyncFolder";
    }
    const Descriptor folder = openDirectory(info.exists() ? path : info.path());
    return folder && m_transfers.permits(userId, folder) ? nullptr : "closedToUploads";
}

const char* SyncFolders::checkFolder(const SyncFolder& folder)
{
    const Descriptor there = openDirectory(folder.localPath);
    if (!there)
        return "missing";
    // As FolderSync does it: one that has no files in the records becomes this folder.
    return isMarked(there, folder) || !m_records.hasEntries(folder.id) ? nullptr : "otherFolder";
}

SyncFolder SyncFolders::add(const Member& member, const QString& localPath, const QString& cloudFolder,
    Store::Missing missing, const QString& kind)
{
    if (const char* reason = checkPath(member.userId, localPath))
        throw Error(State::WrongPlace, reason);
    if (kind == QLatin1String("desktop")) {
        for (const SyncFolder& other : m_records.list(member.userId)) {
            if (other.kind == kind)
                throw Error(State::NameTaken, "alreadySynced");
        }
    }
    Store::Transaction transaction(m_store);
    const Item item = m_store.findFolder(member, cloudFolder, missing);
    SyncFolder made { makeId(SyncFolder::IdKind), member.userId, localPath, item.id, kind, 0, {} };
    m_records.add(made);
    transaction.commit();
    emitNotice(made, "added");
    return made;
}

void SyncFolders::remove(const SyncFolder& folder)
{
    stop(folder.id);
    m_records.remove(folder.id);
    const Descriptor there = openDirectory(folder.localPath);
    if (isMarked(there, folder))
        unlinkat(there.get(), FolderSync::MarkerName, 0);
    emitNotice(folder, "removed");
}

SyncFolder SyncFolders::move(const Member& member, SyncFolder folder, const QString& localPath)
{
    if (const char* reason = checkPath(member.userId, localPath, folder.id, true))
        throw Error(State::WrongPlace, reason);
    if (isWithin(localPath, folder.localPath) && localPath != folder.localPath)
        throw Error(State::WrongPlace, "withinSyncFolder");
    stop(folder.id);
    const Descriptor there = openDirectory(localPath);
    bool isMoved = isMarked(there, folder);
    if (!isMoved) {
        if (there
            && !QDir(localPath).isEmpty(
                QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
            throw Error(State::WrongPlace, "notEmpty");
        // What has taken its place, such as the mount point of its disk, stays where it is.
        const bool isThere = !checkFolder(folder);
        errno = 0;
        isMoved = isThere
            && rename(
                   QFile::encodeName(folder.localPath).constData(), QFile::encodeName(localPath).constData())
                == 0;
        if (!isMoved && (errno == ENOTEMPTY || errno == EEXIST))
            throw Error(State::WrongPlace, "notEmpty");
        if (!isMoved && !there && !openFolder(QFile::encodeName(localPath)))
            throw Error(State::StorageFailed);
    }
    m_records.setLocalPath(folder.id, localPath, isMoved);
    folder.localPath = localPath;
    emitNotice(folder, "moved");
    return m_records.find(folder.userId, folder.id);
}

void SyncFolders::sync(const Member& member, const QString& id, Ended ended)
{
    const SyncFolder folder = m_records.find(member.userId, id);
    if (const auto run = m_runs.find(id); run != m_runs.end()) {
        run->next.push_back(std::move(ended));
        return;
    }
    m_runs[id].waiting.push_back(std::move(ended));
    start(member, folder);
    emitNotice(folder, "syncing");
}

void SyncFolders::start(const Member& member, const SyncFolder& folder)
{
    const auto job = std::make_shared<FolderSync>(m_store, m_contents, m_transfers, member, folder,
        FolderSync::Purpose::Sync,
        [this, member, folder](const SyncReport& report) { end(member, folder, report); });
    m_runs[folder.id].job = job;
    m_queue.add(job);
}

void SyncFolders::end(const Member& member, const SyncFolder& folder, SyncReport report)
{
    // Taken out first: whoever is called may request another sync.
    Run done = m_runs.take(folder.id);
    // The same failure again is no news, nor is nothing to do again.
    const bool hasNews = QString::fromLatin1(report.error) != folder.lastError || report.uploaded
        || report.downloaded || report.removed;
    try {
        // Not every some seconds.
        if (hasNews || !done.waiting.empty())
            m_records.recordEnd(folder.id, QString::fromLatin1(report.error));
    } catch (const Error& error) {
        report.error = error.reason;
        report.state = error.state;
    }
    if (hasNews || !done.waiting.empty())
        emitNotice(folder, report.error ? "failed" : "synced", report);
    if (!done.next.empty()) {
        m_runs[folder.id].waiting = std::move(done.next);
        start(member, folder);
    }
    for (const Ended& ended : done.waiting)
        ended(report);
}

void SyncFolders::stop(const QString& id)
{
    const Run stopped = m_runs.take(id);
    if (!stopped.job)
        return;
    m_queue.remove(stopped.job.get());
    SyncReport report;
    report.state = State::Cancelled;
    report.error = toString(State::Cancelled);
    for (const Ended& ended : stopped.waiting)
        ended(report);
    for (const Ended& ended : stopped.next)
        ended(report);
}

void SyncFolders::scan(const Member& member, const SyncFolder& folder, Ended ended)
{
    add(std::make_shared<FolderSync>(
        m_store, m_contents, m_transfers, member, folder, FolderSync::Purpose::Scan, std::move(ended)));
}

void SyncFolders::add(std::shared_ptr<Job> job)
{
    // Syncs do not count: there are as many as folders.
    if (m_queue.size() - m_runs.size() >= MaxQueued)
        throw Error(State::Busy);
    m_queue.add(std::move(job));
}

void SyncFolders::syncAll()
{
    try {
        for (const SyncFolder& folder : m_records.listAll()) {
            if (m_isSignedIn(folder.userId) && !m_runs.contains(folder.id) && !checkFolder(folder))
                start(m_store.ensureMember(folder.userId), folder);
        }
    } catch (const Error&) {
        // The next time.
    }
}

void SyncFolders::emitNotice(const SyncFolder& folder, const char* state, const SyncReport& report)
{
    const auto key = [](const char* name) { return QString::fromLatin1(name); };
    QMap<QString, QString> actions { { key("action"), key("syncFolderChanged") }, { key("id"), folder.id },
        { key("localPath"), folder.localPath }, { key("state"), key(state) },
        { key("uploaded"), QString::number(report.uploaded) },
        { key("downloaded"), QString::number(report.downloaded) },
        { key("removed"), QString::number(report.removed) },
        { key("conflicts"), QString::number(report.conflicts) },
        { key("failed"), QString::number(report.failed) } };
    if (report.error)
        actions.insert(key("reason"), key(report.error));
    Q_EMIT notice(folder.userId, actions);
}

} // namespace cloudd
