// KCloudDocEventHandle: the library's one connection to the suite's proxy of the cloud-document service.
#pragma once

#include "cloud/servicefollower.h"
#include "framework/events.h"
#include "suite/kcloudsvrproxy.h"

/// Follows the proxy, whichever it is at the moment, and tells the listeners of every page what it tells.
/// Owned by the CloudDoc object, whose hub the events go through. Needs an application. [GUI thread]
class KCloudDocEventHandle final : public QObject {
    Q_OBJECT

public:
    // The events, and what each of them carries.

    /// {isLogin: boolean}: the user has been signed in to the service, or out.
    static constexpr char LoginStatusEvent[] = "clouddoc.loginstatus.changed";
    /// {roamingMode: "auto" or "manual"}: the mode now in force.
    static constexpr char RoamingModeEvent[] = "clouddoc.roamingmode.changed";
    /// {fileId, cloudPath, localPath, status, taskId}, texts, of them those that the service tells.
    static constexpr char SyncStatusEvent[] = "docCloudSyncStatus";

    explicit KCloudDocEventHandle(IKJSExtentionApiEvent& cloudDoc);

    /// Looks which proxy there is now, and connects to it.
    void follow();

private:
    IKJSExtentionApiEvent& m_cloudDoc;
    KServiceFollower<QObject> m_events;
    KServiceFollower<KCloudSvrProxy> m_proxy;

public Q_SLOTS:
    // For the proxy. What one tells that is not the suite's any more is not passed on, nor are actions that
    // are not known or lack what the event carries.
    void onNotifyActionsMapDefault(const QMap<QString, QString>& actions);
    void onLoginStatusChanged(bool isLogin);
};
