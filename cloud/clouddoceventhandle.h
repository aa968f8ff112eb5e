// KCloudDocEventHandle: the library's one connection to the suite's proxy of the cloud-document service.
#pragma once

#include "cloud/roamingmode.h"
#include "framework/events.h"
#include "framework/servicefollower.h"
#include "suite/kcloudsvrproxy.h"

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

/// Follows the proxy, whichever it is at the moment, and informs the listeners of every page of what it
/// reports. Owned by the CloudDoc object, whose hub the events go through. Needs an application. [GUI thread]
class KCloudDocEventHandle final : public QObject {
    Q_OBJECT

public:
    explicit KCloudDocEventHandle(IKJSExtentionApiEvent& cloudDoc);

    /// Looks which proxy there is now, and connects to it.
    void follow();

private:
    IKJSExtentionApiEvent& m_cloudDoc;
    KServiceFollower<QObject> m_events;
    KServiceFollower<KCloudSvrProxy> m_proxy;

public Q_SLOTS:
    // For the proxy. What one reports that is not the suite's any more is not passed on, nor are actions that
    // are not known or lack what the event carries.
    void onNotifyActionsMapDefault(const QMap<QString, QString>& actions);
    void onLoginStatusChanged(bool isLogin);
};

} // namespace jsapi
