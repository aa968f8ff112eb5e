// What the members of SyncFolder take and return.
#pragma once

#include "framework/events.h"
#include "framework/structs.h"

namespace jsapi {

struct SyncFolderInfo {
    QString id;
    QString localPath;
    QString cloudFolderId;
    QString cloudPath;
    QString kind;
    QString mode;
    QString state;
    double lastSyncTime = 0;
    QString lastError;
    static constexpr auto fields()
    {
        using Self = SyncFolderInfo;
        return std::tuple(property("id", &Self::id, "by which other members know it"),
            property("localPath", &Self::localPath, "the folder on this machine"),
            property("cloudFolderId", &Self::cloudFolderId, "the folder in the cloud"),
            property("cloudPath", &Self::cloudPath, "its path there; empty for the root folder"),
            property("kind", &Self::kind, "`folder`, or `desktop` for the user's desktop"),
            property("mode", &Self::mode, "`twoWay`: changes of both sides go to the other"),
            property("state", &Self::state,
                "`idle`, `syncing`, `failed` (see `lastError`), `missing` (there is no local folder) or `otherFolder` "
                "(another one is in its place); for the last two call `changeSyncPath`"),
            property("lastSyncTime", &Self::lastSyncTime,
                "when the last sync ended that was requested or had something to do, ms since 1970; 0 for never"),
            property("lastError", &Self::lastError, "a word for why that failed; empty when it succeeded"));
    }
};

struct SyncFolderList {
    double count = 0;
    std::vector<SyncFolderInfo> folders;
    static constexpr auto fields()
    {
        return std::tuple(property("count", &SyncFolderList::count, "how many there are"),
            property("folders", &SyncFolderList::folders, "all of them, the oldest first"));
    }
};

/// What a sync did.
struct SyncSummary {
    QString id;
    double uploaded = 0;
    double downloaded = 0;
    double removed = 0;
    double conflicts = 0;
    double skipped = 0;
    double bytes = 0;
    static constexpr auto fields()
    {
        using Self = SyncSummary;
        return std::tuple(property("id", &Self::id, "the sync folder"),
            property("uploaded", &Self::uploaded, "files that went to the cloud"),
            property("downloaded", &Self::downloaded, "files that came from there"),
            property("removed", &Self::removed,
                "files that were removed on one side as they had been on the other"),
            property("conflicts", &Self::conflicts,
                "files that had changed on both sides: the local version is kept as `name (local version 1).ext`"),
            property("skipped", &Self::skipped,
                "links, devices, names that the cloud can not have, and files that may not be uploaded"),
            property("bytes", &Self::bytes, "transferred"));
    }
};

struct PathCheck {
    bool valid = false;
    QString reason;
    static constexpr auto fields()
    {
        return std::tuple(property("valid", &PathCheck::valid, "whether it can be used"),
            property("reason", &PathCheck::reason, "a word for why it can not; empty when it can"));
    }
};

struct SyncPrecheck {
    bool allowed = false;
    QString reason;
    double files = 0;
    double size = 0;
    double freeBytes = 0;
    static constexpr auto fields()
    {
        using Self = SyncPrecheck;
        return std::tuple(property("allowed", &Self::allowed, "whether it can be done"),
            property("reason", &Self::reason,
                "a word for why it can not, as of `checkSyncFolderPathValid`, or `diskFull`; empty when it can"),
            property("files", &Self::files, "how many would be transferred"),
            property("size", &Self::size, "of these, bytes"),
            property("freeBytes", &Self::freeBytes, "on the disk of the local folder"));
    }
};

struct FolderSize {
    double size = 0;
    double files = 0;
    double folders = 0;
    static constexpr auto fields()
    {
        using Self = FolderSize;
        return std::tuple(property("size", &Self::size, "of all files in it, bytes"),
            property("files", &Self::files, "at any depth"),
            property("folders", &Self::folders, "at any depth, without itself"));
    }
};

struct ScanChange {
    QString path;
    QString action;
    static constexpr auto fields()
    {
        return std::tuple(property("path", &ScanChange::path, "relative to the folder"),
            property("action", &ScanChange::action,
                "`upload`, `download`, `removeLocal`, `removeCloud`, `conflict` (both versions are kept) or `skip`"));
    }
};

/// What a sync would do.
struct FolderScan {
    double files = 0;
    double folders = 0;
    double size = 0;
    double uploads = 0;
    double downloads = 0;
    double removals = 0;
    double conflicts = 0;
    double skipped = 0;
    double bytes = 0;
    std::vector<ScanChange> changes;
    bool hasMore = false;
    static constexpr auto fields()
    {
        using Self = FolderScan;
        return std::tuple(property("files", &Self::files, "in the local folder, at any depth"),
            property("folders", &Self::folders, "likewise"),
            property("size", &Self::size, "of these files, bytes"),
            property("uploads", &Self::uploads, "files that would go to the cloud"),
            property(
                "downloads", &Self::downloads, "files that would come from there, those with conflicts too"),
            property("removals", &Self::removals, "files that would be removed on one side"),
            property("conflicts", &Self::conflicts, "files that have changed on both sides"),
            property("skipped", &Self::skipped, "what is never synced"),
            property("bytes", &Self::bytes, "that would be transferred"),
            property("changes", &Self::changes, "what would be done, by path; the first 1000"),
            property("hasMore", &Self::hasMore, "whether there are more than these"));
    }
};

struct SyncModes {
    bool supported = false;
    std::vector<QString> modes;
    static constexpr auto fields()
    {
        return std::tuple(
            property("supported", &SyncModes::supported, "whether there is more than one to choose from"),
            property("modes", &SyncModes::modes,
                "for the option `mode` of `syncFolder`; the first is the usual one"));
    }
};

struct RecentFile {
    QString fileId;
    QString name;
    QString cloudPath;
    QString localPath;
    double size = 0;
    double changeTime = 0;
    static constexpr auto fields()
    {
        using Self = RecentFile;
        return std::tuple(property("fileId", &Self::fileId, "its id in the cloud"),
            property("name", &Self::name, "its name"),
            property("cloudPath", &Self::cloudPath, "its path in the cloud"),
            property("localPath", &Self::localPath, "where it is in a sync folder; empty when it is in none"),
            property("size", &Self::size, "bytes"),
            property("changeTime", &Self::changeTime, "when the cloud got this version, ms since 1970"));
    }
};

struct OverlayIcons {
    bool supported = false;
    double missing = 0;
    double repaired = 0;
    static constexpr auto fields()
    {
        using Self = OverlayIcons;
        return std::tuple(
            property("supported", &Self::supported,
                "whether the disk can keep the marks by which file managers know synced files; false as "
                "well while there are no such files"),
            property("missing", &Self::missing, "files without their mark"),
            property("repaired", &Self::repaired, "those that have got it now"));
    }
};

struct UserType {
    QString type;
    QString id;
    QString name;
    static constexpr auto fields()
    {
        using Self = UserType;
        return std::tuple(property("type", &Self::type, "`personal` or `company`"),
            property("id", &Self::id, "the user's id, or the company's"),
            property("name", &Self::name, "for display; may be empty"));
    }
};

/// A dialog has ended.
struct DialogEnd {
    bool confirmed = false;
    static constexpr auto fields()
    {
        return std::tuple(property("confirmed", &DialogEnd::confirmed,
            "false when the user cancelled it, or it could not be answered"));
    }
};

struct SyncNotice {
    QString id;
    QString state;
    QString localPath;
    double uploaded = 0;
    double downloaded = 0;
    double removed = 0;
    double conflicts = 0;
    double failed = 0;
    QString reason;
    static constexpr auto fields()
    {
        using Self = SyncNotice;
        return std::tuple(property("id", &Self::id, "the sync folder"),
            property("state", &Self::state, "`added`, `syncing`, `synced`, `failed`, `moved` or `removed`"),
            property("localPath", &Self::localPath, "the folder on this machine"),
            property("uploaded", &Self::uploaded, "files, as those below, once a sync has ended"),
            property("downloaded", &Self::downloaded, "files that came from the cloud"),
            property("removed", &Self::removed, "files that were removed on one side"),
            property("conflicts", &Self::conflicts, "files of which both versions are kept"),
            property("failed", &Self::failed, "files that will be tried again"),
            property("reason", &Self::reason, "a word for why the first of them, or all, failed; or empty"));
    }
};

inline constexpr Event<SyncNotice> SyncNoticeEvent { "syncFolder.notify",
    "A sync folder has been added, moved or removed, or a sync of it has begun or ended. One that nobody requested and "
    "that finds nothing to do is not reported." };

} // namespace jsapi
