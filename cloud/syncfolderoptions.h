// What pages pass to the members of SyncFolder.
#pragma once

#include "cloud/js_api_syncfolder.h"

namespace jsapi {

struct KJsApiSyncFolder::PathDialogOptions {
    QString title;
    QString localPath;
    static constexpr auto fields()
    {
        return std::tuple(
            optional("title", &PathDialogOptions::title, "of the dialog, shown up to 100 characters"),
            optional("localPath", &PathDialogOptions::localPath, "the folder that it shows first"));
    }
};

struct KJsApiSyncFolder::EntryOptions {
    QString from;
    static constexpr auto fields()
    {
        return std::tuple(optional("from", &EntryOptions::from, "what the user came from, for statistics"));
    }
};

struct KJsApiSyncFolder::MessageOptions {
    QString title;
    QString text;
    std::vector<std::string> buttons;
    static constexpr auto fields()
    {
        using Self = MessageOptions;
        return std::tuple(required("text", &Self::text, "plain text, shown up to 2,000 characters"),
            optional("title", &Self::title, "of the dialog, shown up to 100 characters"),
            optional("buttons", &Self::buttons,
                "their labels, at most 4, shown up to 60 characters; the suite's own button when left out"));
    }
};

struct KJsApiSyncFolder::PrivilegeOptions {
    QString privilege;
    static constexpr auto fields()
    {
        return std::tuple(
            optional("privilege", &PrivilegeOptions::privilege, "what the user could not do without it"));
    }
};

struct KJsApiSyncFolder::SizeOptions {
    QString localPath;
    std::string cloudPath;
    static constexpr auto fields()
    {
        return strictly(
            std::tuple(optional("localPath", &SizeOptions::localPath, "a folder of this machine, or else"),
                optional("cloudPath", &SizeOptions::cloudPath,
                    "one of the cloud: its path or id; `/` is the root folder")));
    }
};

struct KJsApiSyncFolder::FolderOptions {
    QString localPath;
    std::string cloudPath;
    static constexpr auto fields()
    {
        using Self = FolderOptions;
        return strictly(std::tuple(required("localPath", &Self::localPath, "the local folder"),
            optional("cloudPath", &Self::cloudPath,
                "the folder of the cloud: its path or id. The name of the local folder when left out")));
    }
};

struct KJsApiSyncFolder::DesktopOptions {
    std::string cloudPath;
    static constexpr auto fields()
    {
        return strictly(std::tuple(optional(
            "cloudPath", &DesktopOptions::cloudPath, "the folder of the cloud; `Desktop` when left out")));
    }
};

struct KJsApiSyncFolder::ToLocalOptions {
    std::string cloudPath;
    QString localPath;
    static constexpr auto fields()
    {
        using Self = ToLocalOptions;
        return strictly(std::tuple(
            required("cloudPath", &Self::cloudPath, "an existing folder of the cloud: its path or id"),
            required(
                "localPath", &Self::localPath, "the local folder; made where its parent folder is there")));
    }
};

struct KJsApiSyncFolder::SyncOptions {
    std::string id;
    QString localPath;
    std::string cloudPath;
    std::string mode;
    static constexpr auto fields()
    {
        using Self = SyncOptions;
        return strictly(std::tuple(optional("id", &Self::id, "a sync folder, which is synced now; or else"),
            optional("localPath", &Self::localPath, "an existing local folder, which becomes one"),
            optional("cloudPath", &Self::cloudPath,
                "then the folder of the cloud: its path or id. It is made where it is missing; what is in it comes to the "
                "local one, too. The name of the local folder when left out"),
            optional("mode", &Self::mode, "then one of `getSupportSelectSyncFolderMode`")));
    }
};

struct KJsApiSyncFolder::MoveOptions {
    std::string id;
    QString localPath;
    static constexpr auto fields()
    {
        using Self = MoveOptions;
        return strictly(std::tuple(required("id", &Self::id, "the sync folder"),
            required("localPath", &Self::localPath,
                "where nothing is yet, or an empty folder, or where the user has moved it")));
    }
};

struct KJsApiSyncFolder::PathOptions {
    QString localPath;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("localPath", &PathOptions::localPath, "the local folder")));
    }
};

struct KJsApiSyncFolder::IdOptions {
    std::string id;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("id", &IdOptions::id, "the sync folder")));
    }
};

struct KJsApiSyncFolder::RecentOptions {
    std::int32_t count = 20;
    static constexpr auto fields()
    {
        return strictly(std::tuple(optional("count", &RecentOptions::count, "how many at most, 1 to 200")));
    }
};

struct KJsApiSyncFolder::ScanOptions {
    std::string id;
    QString localPath;
    std::string cloudPath;
    static constexpr auto fields()
    {
        using Self = ScanOptions;
        return strictly(std::tuple(optional("id", &Self::id, "a sync folder; or else"),
            optional("localPath", &Self::localPath, "a local folder that may become one"),
            optional("cloudPath", &Self::cloudPath, "then the folder of the cloud, which may be missing")));
    }
};

} // namespace jsapi
