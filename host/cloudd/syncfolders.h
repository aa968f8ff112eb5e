// The sync folders of all users: which there may be, and their syncs, each when it is requested and every some seconds.
#pragma once

#include "host/cloudd/foldersync.h"

#include <QTimer>

namespace cloudd {

class SyncFolders : public QObject {
    Q_OBJECT
public:
    using Ended = FolderSync::Ended;
    /// Whether a user is signed in in a suite that is connected.
    using IsSignedIn = std::function<bool(const QString& userId)>;

    /// `intervalMs`: between two syncs of a folder that nobody requests; 0: there are none.
    SyncFolders(
        Store& store, Contents& contents, Transfers& transfers, int intervalMs, IsSignedIn isSignedIn);

    /// Why a local folder can not become a sync folder, a word, or null when it can: "notAbsolute", "root", "home",
    /// "missing", "link", "notFolder", "notWritable", "closedToUploads", "withinSyncFolder", "containsSyncFolder".
    /// `exceptId`: a sync folder that is to be moved there. `mayBeMissing`: its parent folder must be there then.
    const char* checkPath(
        const QString& userId, const QString& path, const QString& exceptId = {}, bool mayBeMissing = false);
    /// Why a sync folder can not be synced at present: "missing", "otherFolder"; null when it can.
    const char* checkFolder(const SyncFolder& folder);

    /// `cloudFolder`: a cloud path or an id. Throws Error: WrongPlace with the word of checkPath(), NameTaken (a second
    /// desktop), and as Store::findFolder().
    SyncFolder add(const Member& member, const QString& localPath, const QString& cloudFolder,
        Store::Missing missing, const QString& kind);
    /// Files stay on both sides.
    void remove(const SyncFolder& folder);
    /// Moves the folder to a path where nothing is, or an empty folder; or finds it there already. From another disk, or
    /// where it is missing, nothing is moved: its files are downloaded again, and the old ones stay.
    SyncFolder move(const Member& member, SyncFolder folder, const QString& localPath);

    /// One that comes while the folder is being synced waits for another sync, for what has changed meanwhile.
    void sync(const Member& member, const QString& id, Ended ended);
    void scan(const Member& member, const SyncFolder& folder, Ended ended);
    bool isSyncing(const QString& id) const { return m_runs.contains(id); }
    bool isBusy() const { return m_queue.size() > 0; }
    /// Queues a job that changes nothing in the cloud. Throws Error(Busy) when there are too many.
    void add(std::shared_ptr<Job> job);
    SyncRecords& records() { return m_records; }

Q_SIGNALS:
    void notice(const QString& userId, const QMap<QString, QString>& actions);
    void idle();

private:
    struct Run {
        std::shared_ptr<FolderSync> job;
        std::vector<Ended> waiting;
        std::vector<Ended> next; ///< for the sync after this one
    };

    void start(const Member& member, const SyncFolder& folder);
    void end(const Member& member, const SyncFolder& folder, SyncReport report);
    void stop(const QString& id);
    void syncAll();
    void emitNotice(const SyncFolder& folder, const char* state, const SyncReport& report = {});

    Store& m_store;
    Contents& m_contents;
    Transfers& m_transfers;
    SyncRecords m_records;
    IsSignedIn m_isSignedIn;
    JobQueue m_queue;
    QHash<QString, Run> m_runs;
    QTimer m_timer;
};

} // namespace cloudd
