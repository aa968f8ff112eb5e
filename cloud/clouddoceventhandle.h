// KCloudDocEventHandle: the events of CloudDoc.
#pragma once

#include "cloud/cloudnoticefollower.h"
#include "cloud/roamingmode.h"
#include "framework/events.h"

namespace jsapi {

struct LoginStatus {
    bool isLogin;
    static constexpr auto fields()
    {
        return std::tuple(property("isLogin", &LoginStatus::isLogin, "whether the user is signed in"));
    }
};

struct RoamingModeChange {
    RoamingMode roamingMode;
    static constexpr auto fields()
    {
        return std::tuple(property("roamingMode", &RoamingModeChange::roamingMode, "the mode in force now"));
    }
};

/// Strings of the service's, of them those that it reports.
struct SyncStatus {
    std::optional<QString> fileId;
    std::optional<QString> cloudPath;
    std::optional<QString> localPath;
    std::optional<QString> status;
    std::optional<QString> taskId;
    static constexpr auto fields()
    {
        using Self = SyncStatus;
        return std::tuple(property("fileId", &Self::fileId, "the document's id"),
            property("cloudPath", &Self::cloudPath, "its path in the cloud"),
            property("localPath", &Self::localPath, "its path on this machine"),
            property("status", &Self::status, "how it stands"),
            property("taskId", &Self::taskId, "the transfer that is under way"));
    }
};

inline constexpr Event<LoginStatus> LoginStatusEvent { "clouddoc.loginstatus.changed",
    "The user has been signed in to the cloud service, or out." };
inline constexpr Event<RoamingModeChange> RoamingModeEvent { "clouddoc.roamingmode.changed",
    "Another roaming mode is in force." };
inline constexpr Event<SyncStatus> SyncStatusEvent { "docCloudSyncStatus",
    "A document is being brought up to date, or is." };

/// Informs the listeners of every page. Actions that are not known or lack what the event carries are not passed on.
class KCloudDocEventHandle final : public KCloudNoticeFollower {
    Q_OBJECT

public:
    explicit KCloudDocEventHandle(IKJSExtentionApiEvent& cloudDoc)
        : m_cloudDoc(cloudDoc)
    {
    }

private:
    void takeActions(const QMap<QString, QString>& actions) override;
    void takeLogin(bool isLogin) override;

    IKJSExtentionApiEvent& m_cloudDoc;
};

} // namespace jsapi
