#include "host/cloudd/foldersync.h"

#include "host/cloudd/names.h"
#include "host/cloudd/slice.h"
#include "host/cloudd/syncpaths.h"

#include <QFile>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

constexpr int MaxEntries = 200'000;
constexpr int CloudPageItems = 200;
/// Paths that are decided on in one step, if nothing is transferred.
constexpr int PathsPerStep = 50;
/// After so many the disk is full or broken. Fewer may be folders that are not writable.
constexpr int MaxStorageFailures = 20;

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

} // namespace cloudd
