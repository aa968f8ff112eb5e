// The files of a FolderSync: how each that is to go to the other side gets there. What is to be done is found in foldersync.cpp.
#include "host/cloudd/foldersync.h"

#include "host/cloudd/names.h"
#include "host/cloudd/slice.h"
#include "host/cloudd/syncpaths.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace cloudd {

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
