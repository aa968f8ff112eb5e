#include "host/cloudd/foldersync.h"

#include "host/cloudd/names.h"
#include "host/cloudd/slice.h"

#include <QFile>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace cloudd {

namespace {

constexpr int MaxEntries = 200'000;
constexpr int CloudPageItems = 200;
/// Paths that are decided on in one step, if nothing is transferred.
constexpr int PathsPerStep = 50;
/// After so many the disk is full or broken. Fewer may be folders that are not writable.
constexpr int MaxStorageFailures = 20;
constexpr qint64 NsPerSecond = 1'000'000'000;

QString parentOf(const QString& path)
{
    return path.left(qMax(0, path.lastIndexOf(QLatin1Char('/'))));
}

QString nameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString joinPath(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
}

qint64 nanoseconds(const timespec& time)
{
    return time.tv_sec * NsPerSecond + time.tv_nsec;
}

/// The name as the cloud can have it; nothing for one that it can not.
std::optional<QString> toItemName(const QByteArray& name)
{
    QString decoded = QFile::decodeName(name);
    try {
        checkItemName(decoded);
    } catch (const Error&) {
        return std::nullopt;
    }
    return QFile::encodeName(decoded) == name ? std::optional(decoded) : std::nullopt;
}

bool isOwnName(const QByteArray& name)
{
    return name.startsWith(FolderSync::MarkerName);
}

/// Whether a sync that was killed has left a file of this name, and not the user.
bool isLeftover(const QByteArray& name)
{
    const QByteArray prefix = QByteArray(FolderSync::MarkerName) + '-';
    const QByteArray rest = name.mid(prefix.size());
    return name.startsWith(prefix) && (rest == "new" || QByteArray::number(rest.toLongLong()) == rest);
}

std::vector<QByteArray> listNames(const Descriptor& folder)
{
    std::vector<QByteArray> names;
    DIR* stream = fdopendir(openat(folder.get(), ".", FolderFlags));
    if (!stream)
        throw Error(State::SourceUnreadable);
    errno = 0;
    while (const dirent* entry = readdir(stream)) {
        const QByteArray name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..")
            names.push_back(name);
    }
    const bool isComplete = errno == 0;
    closedir(stream);
    // What is not listed would be taken for removed.
    if (!isComplete)
        throw Error(State::SourceUnreadable);
    return names;
}

} // namespace

FolderSync::FolderSync(Store& store, Contents& contents, Transfers& transfers, const Member& member,
    SyncFolder folder, Purpose purpose, Ended ended)
    : m_store(store)
    , m_contents(contents)
    , m_transfers(transfers)
    , m_records(store)
    , m_member(member)
    , m_folder(std::move(folder))
    , m_purpose(purpose)
    , m_ended(std::move(ended))
{
}

Job::Step FolderSync::step()
{
    try {
        const Step step = advance();
        if (step != Step::Ended)
            return step;
    } catch (const Error& error) {
        m_work = Work::None;
        m_hash.reset();
        m_upload.reset();
        m_copy.reset();
        fail(error);
        if (error.state == State::StorageFailed)
            ++m_storageFailures;
        if (m_phase >= Phase::Files && m_storageFailures < MaxStorageFailures)
            return Step::Again;
    }
    m_ended(m_report);
    return Step::Ended;
}

Job::Step FolderSync::advance()
{
    switch (m_phase) {
    case Phase::Open:
        open();
        m_phase = Phase::Local;
        return Step::Again;
    case Phase::Local:
        if (!m_localFolders.isEmpty()) {
            readLocalFolder();
            return Step::Again;
        }
        m_phase = Phase::Cloud;
        return Step::Again;
    case Phase::Cloud:
        if (!m_cloudFolders.empty()) {
            readCloudFolder();
            return Step::Again;
        }
        for (auto path = m_local.keyBegin(); path != m_local.keyEnd(); ++path)
            m_paths.insert(*path);
        for (auto path = m_cloud.keyBegin(); path != m_cloud.keyEnd(); ++path)
            m_paths.insert(*path);
        for (auto path = m_entries.keyBegin(); path != m_entries.keyEnd(); ++path)
            m_paths.insert(*path);
        m_phase = Phase::Files;
        return Step::Again;
    case Phase::Files:
        for (int count = 0; count < PathsPerStep && m_work == Work::None; ++count) {
            if (m_paths.empty()) {
                m_phase = Phase::Folders;
                return Step::Again;
            }
            const QString path = *m_paths.begin();
            m_paths.erase(m_paths.begin());
            decide(path);
        }
        return m_work == Work::None ? Step::Again : work();
    case Phase::Folders:
        removeFolders();
        return m_goneFolders.empty() ? Step::Ended : Step::Again;
    }
    return Step::Ended;
}

void FolderSync::open()
{
    m_root = Descriptor(::open(QFile::encodeName(m_folder.localPath).constData(), FolderFlags));
    struct stat found { };
    if (!m_root || fstat(m_root.get(), &found) != 0)
        throw Error(State::WrongPlace, "missing");
    m_device = found.st_dev;
    if (!m_folder.id.isEmpty()) {
        m_entries = m_records.listEntries(m_folder.id);
        struct stat marker { };
        const Descriptor file = openRegular(m_root.get(), MarkerName, O_NOFOLLOW, marker);
        const QByteArray id = m_folder.id.toLatin1();
        const bool isOurs = file && readSlice(file, sliceBuffer(), SliceBytes) == id.size()
            && id == QByteArray::fromRawData(sliceBuffer(), id.size());
        // An empty folder in place of a disk that is not mounted would remove everything from the cloud.
        if (!isOurs && !m_entries.isEmpty())
            throw Error(State::WrongPlace, "otherFolder");
        if (!isScan()) {
            // Of a sync that was killed.
            for (const QByteArray& name : listNames(m_root)) {
                if (isLeftover(name))
                    unlinkat(m_root.get(), name.constData(), 0);
            }
            if (!isOurs) {
                Incoming made(m_root, QByteArray(MarkerName) + "-new");
                made.write(id.constData(), id.size());
                made.place(m_root, MarkerName);
            }
        }
    }
    m_localFolders.append(QString());
    if (!m_folder.cloudFolderId.isEmpty())
        m_cloudFolders.push_back({ {}, m_store.findItemById(m_folder.cloudFolderId).id });
}

void FolderSync::readLocalFolder()
{
    const QString path = m_localFolders.takeLast();
    const Descriptor folder = openLocalFolder(path, false);
    if (!folder && errno == EACCES && !path.isEmpty()) {
        ++m_report.skipped;
        m_skipped.insert(path);
        return;
    }
    if (!folder)
        throw Error(State::SourceUnreadable);
    for (const QByteArray& encoded : listNames(folder)) {
        struct stat found { };
        if (isOwnName(encoded))
            continue;
        if (fstatat(folder.get(), encoded.constData(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno == ENOENT)
                continue;
            throw Error(State::SourceUnreadable);
        }
        const std::optional<QString> name = toItemName(encoded);
        const bool isFolder = S_ISDIR(found.st_mode);
        const bool isOtherDisk = isFolder && found.st_dev != m_device;
        if (!name || (!isFolder && !S_ISREG(found.st_mode)) || isOtherDisk
            || (isFolder && path.count(QLatin1Char('/')) >= MaxFolderDepth - 1)) {
            ++m_report.skipped;
            if (name)
                m_skipped.insert(joinPath(path, *name));
            continue;
        }
        if (m_local.size() >= MaxEntries)
            throw Error(State::Busy, "tooManyFiles");
        const QString entry = joinPath(path, *name);
        m_local.insert(entry, describe(found));
        if (isFolder) {
            ++m_report.folders;
            m_localFolders.append(entry);
        } else {
            ++m_report.files;
            m_report.localBytes += found.st_size;
        }
    }
}

void FolderSync::readCloudFolder()
{
    const Pending pending = m_cloudFolders.back();
    m_cloudFolders.pop_back();
    std::vector<Item> items;
    for (QString after; items.empty() || items.size() == CloudPageItems; after = items.back().name) {
        items = m_store.listChildren(pending.folderId, after, CloudPageItems);
        for (const Item& item : items) {
            if (isOwnName(QFile::encodeName(item.name)))
                continue;
            const QString path = joinPath(pending.path, item.name);
            m_cloud.insert(path, item);
            if (item.isFolder)
                m_cloudFolders.push_back({ path, item.id });
        }
        if (items.empty())
            break;
    }
    if (m_cloud.size() > MaxEntries)
        throw Error(State::Busy, "tooManyFiles");
}

void FolderSync::decide(const QString& path)
{
    // What is skipped here is not missing.
    for (QString above = path; !above.isEmpty(); above = parentOf(above)) {
        if (m_skipped.contains(above))
            return;
    }
    const auto local = m_local.constFind(path);
    const auto cloud = m_cloud.constFind(path);
    const bool isLocal = local != m_local.constEnd();
    const bool isCloud = cloud != m_cloud.constEnd();
    if (!isLocal && !isCloud)
        return forget(path);
    if (isLocal && isCloud && local->isFolder != cloud->isFolder)
        throw Error(State::NameTaken);
    if (isLocal ? local->isFolder : cloud->isFolder)
        decideFolder(path);
    else
        decideFile(path);
}

void FolderSync::decideFolder(const QString& path)
{
    const bool isLocal = m_local.contains(path);
    const bool isCloud = m_cloud.contains(path);
    const bool wasBoth = m_entries.contains(path) && m_entries[path].isFolder;
    if (isLocal != isCloud && wasBoth) {
        // What is in it comes first: it may not be empty then.
        m_goneFolders.push_back(path);
        return;
    }
    if (isScan())
        return;
    if (!isCloud)
        ensureCloudFolder(path);
    else if (!isLocal && !openLocalFolder(path, true))
        throw Error(State::StorageFailed);
    if (!wasBoth)
        record(path, m_cloud[path], {}, false);
}

void FolderSync::decideFile(const QString& path)
{
    const bool isLocal = m_local.contains(path);
    const bool isCloud = m_cloud.contains(path);
    const bool hasEntry = m_entries.contains(path) && !m_entries[path].isFolder;
    if (!isLocal) {
        const Item& item = m_cloud[path];
        if (hasEntry && m_entries[path].itemId == item.id && m_entries[path].sha256 == item.sha256)
            removeCloudFile(path);
        else
            beginDownload(path, {});
        return;
    }
    if (!isCloud && !hasEntry)
        return beginUpload(path);
    if (isAsRecorded(path))
        return decideVersions(path, m_entries[path].sha256);
    beginHash(path);
}

void FolderSync::decideVersions(const QString& path, const QString& localHash)
{
    const bool hasEntry = m_entries.contains(path) && !m_entries[path].isFolder;
    const QString common = hasEntry ? m_entries[path].sha256 : QString();
    const bool isLocalChanged = !hasEntry || localHash != common;
    if (!m_cloud.contains(path)) {
        if (isLocalChanged)
            beginUpload(path);
        else
            removeLocalFile(path);
        return;
    }
    const Item& item = m_cloud[path];
    if (item.sha256 == localHash) {
        const bool isKnown = hasEntry && common == localHash && m_entries[path].itemId == item.id;
        if (!isScan() && !(isKnown && isAsRecorded(path)))
            record(path, item, m_local[path], m_hash != nullptr && canDetectChanges(m_hashedStat));
        return;
    }
    if (!isLocalChanged)
        return beginDownload(path, common);
    if (hasEntry && item.sha256 == common)
        return beginUpload(path);
    if (plan(&SyncReport::conflicts, path, "conflict"))
        beginDownload(path, common);
}

void FolderSync::removeFolders()
{
    for (int count = 0; count < PathsPerStep && !m_goneFolders.empty(); ++count) {
        const QString path = m_goneFolders.back();
        m_goneFolders.pop_back();
        if (isScan())
            continue;
        // One that is not empty, or in use, stays, and the next sync makes it on the other side again.
        if (!m_local.contains(path))
            m_store.removeItem(m_cloud[path]);
        else if (const Descriptor above = openLocalFolder(parentOf(path), false))
            unlinkat(above.get(), QFile::encodeName(nameOf(path)).constData(), AT_REMOVEDIR);
        forget(path);
    }
}

Job::Step FolderSync::work()
{
    switch (m_work) {
    case Work::Hash:
        return hash();
    case Work::Upload:
        return upload();
    case Work::Download:
        if (m_copy->step())
            return Step::Again;
        finishDownload();
        return Step::Again;
    case Work::None:
        break;
    }
    return Step::Again;
}

void FolderSync::beginHash(const QString& path)
{
    const Descriptor folder = openLocalFolder(parentOf(path), false);
    m_hashed = folder ? openRegular(folder.get(), QFile::encodeName(nameOf(path)), O_NOFOLLOW, m_hashedStat)
                      : Descriptor();
    if (!m_hashed)
        throw Error(State::SourceUnreadable);
    if (!m_transfers.permits(m_member.userId, m_hashed))
        throw Error(State::Closed);
    m_hash = std::make_unique<QCryptographicHash>(QCryptographicHash::Sha256);
    m_path = path;
    m_work = Work::Hash;
}

Job::Step FolderSync::hash()
{
    const qint64 count = readSlice(m_hashed, sliceBuffer(), SliceBytes);
    if (count < 0)
        throw Error(State::SourceUnreadable);
    if (count > 0) {
        m_hash->addData(sliceBuffer(), static_cast<int>(count));
        return Step::Again;
    }
    struct stat now { };
    if (fstat(m_hashed.get(), &now) != 0 || !isUnchanged(m_hashedStat, now))
        throw Error(State::SourceUnreadable, "changing");
    m_work = Work::None;
    m_local[m_path] = describe(m_hashedStat);
    const QString path = m_path;
    decideVersions(path, QString::fromLatin1(m_hash->result().toHex()));
    m_hash.reset();
    return Step::Again;
}

void FolderSync::beginUpload(const QString& path)
{
    if (isScan()) {
        const Descriptor folder = openLocalFolder(parentOf(path), false);
        struct stat found { };
        const Descriptor file = folder
            ? openRegular(folder.get(), QFile::encodeName(nameOf(path)), O_NOFOLLOW, found)
            : Descriptor();
        if (!file || !m_transfers.permits(m_member.userId, file)) {
            plan(&SyncReport::skipped, path, "skip");
            return;
        }
        m_report.bytes += found.st_size;
        plan(&SyncReport::uploaded, path, "upload");
        return;
    }
    m_fileFolder = openLocalFolder(parentOf(path), false);
    if (!m_fileFolder)
        throw Error(State::SourceUnreadable);
    // Not by its path: a link may have taken the place of a folder on the way.
    m_upload = std::make_unique<Upload>(
        m_contents, descriptorPath(m_fileFolder) + '/' + QFile::encodeName(nameOf(path)),
        [this](const Descriptor& file) { return m_transfers.permits(m_member.userId, file); }, false);
    m_path = path;
    m_work = Work::Upload;
}

Job::Step FolderSync::upload()
{
    if (!m_upload->prepare())
        return Step::Later;
    Throttle& throttle = m_transfers.throttle();
    const qint64 available = throttle.available();
    if (available < 1)
        return Step::Later;
    const qint64 before = m_upload->transferred();
    const bool more = m_upload->step(available);
    throttle.spend(m_upload->transferred() - before);
    if (!more) {
        m_work = Work::None;
        try {
            finishUpload();
        } catch (const Error&) {
            m_transfers.removeUnused(m_upload->sha256());
            throw;
        }
        m_upload.reset();
    }
    return Step::Again;
}

void FolderSync::finishUpload()
{
    Store::Transaction transaction(m_store);
    const Item folder = ensureCloudFolder(parentOf(m_path));
    const auto replaced = m_store.findChild(folder.id, nameOf(m_path));
    const auto seen = m_cloud.constFind(m_path);
    const bool isAsSeen =
        seen == m_cloud.constEnd() ? !replaced : replaced && replaced->sha256 == seen->sha256;
    // A version that has come meanwhile must not be replaced.
    if (!isAsSeen)
        throw Error(State::Busy, "changing");
    const Item item = m_store.putFile(folder, nameOf(m_path), m_upload->total(), m_upload->sha256());
    record(m_path, item, describe(m_upload->opened()), true);
    transaction.commit();
    ++m_report.uploaded;
    m_report.bytes += m_upload->total();
    if (replaced)
        m_transfers.removeUnused(replaced->sha256);
}

void FolderSync::beginDownload(const QString& path, const QString& lastCopied)
{
    m_copied = m_store.findItemById(m_cloud[path].id);
    m_fileFolder = openLocalFolder(parentOf(path), !isScan());
    if (m_fileFolder)
        requireOpen(m_fileFolder, QFile::encodeName(nameOf(path)));
    if (isScan()) {
        m_report.bytes += m_copied.size;
        plan(&SyncReport::downloaded, path, "download");
        return;
    }
    m_path = path;
    m_copy = std::make_unique<LocalCopy>(m_contents, m_copied.sha256, m_copied.size,
        Descriptor(fcntl(m_fileFolder.get(), F_DUPFD_CLOEXEC, 0)), QFile::encodeName(nameOf(path)),
        lastCopied, [this] {
            return std::make_unique<Incoming>(
                m_root, QByteArray(MarkerName) + '-' + QByteArray::number(++m_incomingNumber));
        });
    m_work = Work::Download;
}

void FolderSync::finishDownload()
{
    m_work = Work::None;
    const auto copy = std::move(m_copy);
    if (copy->hasWritten()) {
        ++m_report.downloaded;
        m_report.bytes += m_copied.size;
    }
    struct stat found { };
    if (copy->hasKept()) {
        const QString kept = joinPath(parentOf(m_path), QFile::decodeName(copy->keptName()));
        if (fstatat(m_fileFolder.get(), copy->keptName().constData(), &found, AT_SYMLINK_NOFOLLOW) == 0) {
            m_local.insert(kept, describe(found));
            m_paths.insert(kept);
        }
    }
    if (fstatat(
            m_fileFolder.get(), QFile::encodeName(nameOf(m_path)).constData(), &found, AT_SYMLINK_NOFOLLOW)
        == 0)
        record(m_path, m_copied, describe(found), false);
}

void FolderSync::removeLocalFile(const QString& path)
{
    const Descriptor folder = openLocalFolder(parentOf(path), false);
    const QByteArray name = QFile::encodeName(nameOf(path));
    if (folder)
        requireOpen(folder, name);
    if (!plan(&SyncReport::removed, path, "removeLocal"))
        return;
    if (!folder)
        return forget(path);
    // Under another name nobody replaces it unseen. If the service is killed now, it comes back under that name.
    const QByteArray kept = keepLocalVersion(folder, name);
    struct stat found { };
    const LocalFile expected = m_local[path];
    const bool isSame = fstatat(folder.get(), kept.constData(), &found, AT_SYMLINK_NOFOLLOW) == 0
        && S_ISREG(found.st_mode) && describe(found).inode == expected.inode && found.st_size == expected.size
        && describe(found).modified == expected.modified;
    if (isSame) {
        unlinkat(folder.get(), kept.constData(), 0);
    } else {
        --m_report.removed;
        renameat2(folder.get(), kept.constData(), folder.get(), name.constData(), RENAME_NOREPLACE);
    }
    forget(path);
}

void FolderSync::removeCloudFile(const QString& path)
{
    if (!plan(&SyncReport::removed, path, "removeCloud"))
        return;
    // Programs that save a file may remove it for a moment.
    const Descriptor folder = openLocalFolder(parentOf(path), false);
    struct stat found { };
    if (folder
        && fstatat(folder.get(), QFile::encodeName(nameOf(path)).constData(), &found, AT_SYMLINK_NOFOLLOW)
            == 0) {
        --m_report.removed;
        throw Error(State::Busy, "changing");
    }
    Store::Transaction transaction(m_store);
    const Item item = m_store.findItemById(m_cloud[path].id);
    if (item.sha256 != m_cloud[path].sha256) {
        --m_report.removed;
        throw Error(State::Busy, "changing");
    }
    m_store.removeItem(item);
    forget(path);
    transaction.commit();
    m_transfers.removeUnused(item.sha256);
}

void FolderSync::record(const QString& path, const Item& item, const LocalFile& local, bool isReliable)
{
    if (!item.isFolder)
        markAsSynced(path);
    const SyncEntry entry { item.isFolder, item.id, item.sha256, local.size, local.inode, local.modified,
        isReliable ? local.changed : 0 };
    m_records.recordEntry(m_folder.id, path, entry);
    m_entries.insert(path, entry);
}

void FolderSync::forget(const QString& path)
{
    if (isScan() || !m_entries.contains(path))
        return;
    m_records.removeEntry(m_folder.id, path);
    m_entries.remove(path);
}

void FolderSync::markAsSynced(const QString& path)
{
    const Descriptor folder = openLocalFolder(parentOf(path), false);
    struct stat found { };
    const Descriptor file =
        folder ? openRegular(folder.get(), QFile::encodeName(nameOf(path)), O_NOFOLLOW, found) : Descriptor();
    // Not written again: that would change the time stamp.
    if (file && fgetxattr(file.get(), StateAttribute, nullptr, 0) < 0)
        fsetxattr(file.get(), StateAttribute, "synced", 6, 0);
}

Descriptor FolderSync::openLocalFolder(const QString& path, bool make)
{
    Descriptor folder(openat(m_root.get(), ".", FolderFlags));
    const QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& name : names) {
        const QByteArray encoded = QFile::encodeName(name);
        Descriptor next(openat(folder.get(), encoded.constData(), FolderFlags));
        if (!next && make && errno == ENOENT) {
            requireOpen(folder, encoded);
            if (mkdirat(folder.get(), encoded.constData(), S_IRWXU) != 0 && errno != EEXIST)
                throw Error(State::StorageFailed);
            next = Descriptor(openat(folder.get(), encoded.constData(), FolderFlags));
        }
        if (!next) {
            if (make)
                throw Error(State::NameTaken);
            return Descriptor();
        }
        folder = std::move(next);
    }
    return folder;
}

Item FolderSync::ensureCloudFolder(const QString& path)
{
    Item folder = m_store.findItemById(m_folder.cloudFolderId);
    QString above;
    const QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& name : names) {
        const auto known = m_store.findChild(folder.id, name);
        if (known && !known->isFolder)
            throw Error(State::NameTaken);
        folder = known ? *known : m_store.addFolder(folder, name);
        above = joinPath(above, name);
        m_cloud.insert(above, folder);
    }
    return folder;
}

bool FolderSync::plan(qint64 SyncReport::*counter, const QString& path, const char* action)
{
    ++(m_report.*counter);
    if (isScan() && m_report.changes.size() < SyncReport::MaxChanges)
        m_report.changes.push_back({ path, action });
    return !isScan();
}

void FolderSync::requireOpen(const Descriptor& folder, const QByteArray& name) const
{
    if (!m_transfers.permits(m_member.userId, folder, name))
        throw Error(State::Closed);
}

void FolderSync::fail(const Error& error)
{
    if (error.state == State::Closed) {
        ++m_report.skipped;
        return;
    }
    ++m_report.failed;
    if (m_report.error)
        return;
    m_report.error = error.reason;
    m_report.state = error.state;
}

FolderSync::LocalFile FolderSync::describe(const struct stat& found)
{
    return { S_ISDIR(found.st_mode), found.st_size, static_cast<qint64>(found.st_ino),
        nanoseconds(found.st_mtim), nanoseconds(found.st_ctim) };
}

bool FolderSync::isAsRecorded(const QString& path) const
{
    const auto entry = m_entries.constFind(path);
    const auto local = m_local.constFind(path);
    return entry != m_entries.constEnd() && local != m_local.constEnd() && entry->changed != 0
        && entry->size == local->size && entry->inode == local->inode && entry->modified == local->modified
        && entry->changed == local->changed;
}

} // namespace cloudd
