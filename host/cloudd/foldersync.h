// Makes a folder of this machine and a folder of the cloud equal, or finds out what that would take.
//
// What has changed since both had the same version goes to the other side. A file that has changed on both sides keeps its
// name with the cloud's version; the local one becomes "name (local version 1).ext" and is uploaded, too. A file that has
// been removed on one side is removed on the other only if it has not changed there, and comes back otherwise.
//
// Each file is recorded with the change that makes it equal, so a sync that is killed is continued by the next one.
#pragma once

#include "host/cloudd/jobqueue.h"
#include "host/cloudd/localcopy.h"
#include "host/cloudd/syncrecords.h"
#include "host/cloudd/transfers.h"
#include "host/cloudd/upload.h"

#include <QSet>
#include <set>

namespace cloudd {

/// What a sync did, or a scan found to be done.
struct SyncReport {
    const char* error = nullptr; ///< a word: why the sync, or the first file that failed, has failed
    State state = State::Ok;
    qint64 uploaded = 0;
    qint64 downloaded = 0;
    qint64 removed = 0;   ///< files, on either side
    qint64 conflicts = 0; ///< files that had changed on both sides: both versions are kept
    qint64 skipped = 0;   ///< links, devices, names that the cloud can not have, what is closed
    qint64 failed = 0;
    qint64 bytes = 0; ///< transferred
    qint64 files = 0; ///< in the local folder
    qint64 folders = 0;
    qint64 localBytes = 0;

    struct Change {
        QString path; ///< relative
        const char* action;
    };
    static constexpr size_t MaxChanges = 1000;
    std::vector<Change> changes; ///< the first ones
};

class FolderSync final : public Job {
public:
    enum class Purpose { Sync, Scan };
    using Ended = std::function<void(const SyncReport&)>;

    /// `folder` may be one that is not recorded, with an empty id, and then without a cloud folder: a scan of it finds what
    /// a first sync would do.
    FolderSync(Store& store, Contents& contents, Transfers& transfers, const Member& member,
        SyncFolder folder, Purpose purpose, Ended ended);
    Step step() override;

    /// The file in a sync folder that says which one it is. Neither it nor anything whose name begins so is synced.
    static constexpr auto MarkerName = ".nova-sync";
    /// The extended attribute of files that are in step.
    static constexpr auto StateAttribute = "user.nova.sync-state";

private:
    struct LocalFile {
        bool isFolder = false;
        qint64 size = 0;
        qint64 inode = 0;
        qint64 modified = 0;
        qint64 changed = 0;
    };
    struct Pending {
        QString path;
        QString folderId; ///< of the cloud
    };
    enum class Phase { Open, Local, Cloud, Files, Folders };

    Step advance();
    void open();
    void readLocalFolder();
    void readCloudFolder();
    void decide(const QString& path);
    void decideFolder(const QString& path);
    void decideFile(const QString& path);
    /// Decides on a file that is on both sides, or was, once the hash of the local one is known.
    void decideVersions(const QString& path, const QString& localHash);
    void removeFolders();
    Step work();

    void beginHash(const QString& path);
    Step hash();
    void beginUpload(const QString& path);
    Step upload();
    void finishUpload();
    void beginDownload(const QString& path, const QString& lastCopied);
    void finishDownload();
    void removeLocalFile(const QString& path);
    void removeCloudFile(const QString& path);

    void record(const QString& path, const Item& item, const LocalFile& local, bool isReliable);
    void forget(const QString& path);
    void markAsSynced(const QString& path);
    Descriptor openLocalFolder(const QString& path, bool make);
    Item ensureCloudFolder(const QString& path);
    /// Counts and lists a change. True if it is to be made, not only found.
    bool plan(qint64 SyncReport::*counter, const QString& path, const char* action);
    void fail(const Error& error);
    /// Throws Error(Closed) when the suite closes that name in a local folder, where nothing needs to be.
    void requireOpen(const Descriptor& folder, const QByteArray& name) const;
    bool isScan() const { return m_purpose == Purpose::Scan; }
    static LocalFile describe(const struct stat& found);
    bool isAsRecorded(const QString& path) const;

    Store& m_store;
    Contents& m_contents;
    Transfers& m_transfers;
    SyncRecords m_records;
    const Member m_member;
    const SyncFolder m_folder;
    const Purpose m_purpose;
    const Ended m_ended;
    SyncReport m_report;
    int m_storageFailures = 0;

    Phase m_phase = Phase::Open;
    Descriptor m_root;
    dev_t m_device = 0;
    qint64 m_incomingNumber = 0;
    QStringList m_localFolders; ///< still to be read
    std::vector<Pending> m_cloudFolders;
    QMap<QString, LocalFile> m_local;
    QSet<QString> m_skipped; ///< local paths
    QMap<QString, Item> m_cloud;
    QMap<QString, SyncEntry> m_entries;
    std::set<QString> m_paths; ///< still to be decided on
    std::vector<QString> m_goneFolders;

    // The file that is being hashed or transferred.
    enum class Work { None, Hash, Upload, Download };
    Work m_work = Work::None;
    QString m_path;
    Descriptor m_hashed;
    struct stat m_hashedStat { };
    std::unique_ptr<QCryptographicHash> m_hash;
    std::unique_ptr<Upload> m_upload;
    std::unique_ptr<LocalCopy> m_copy;
    Descriptor m_fileFolder; ///< the local folder that it is in
    Item m_copied;
};

} // namespace cloudd
