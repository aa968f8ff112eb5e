// KCloudNoticeFollower: what the cloud-document service reports without having been asked, for the objects that pass it on
// as events.
#pragma once

#include "framework/servicefollower.h"
#include "suite/kcloudsvrproxy.h"

namespace jsapi {

/// Follows the suite's proxy of the service, whichever it is at the moment. Owned by the object whose hub the events go
/// through. Needs an application. [GUI thread]
class KCloudNoticeFollower : public QObject {
    Q_OBJECT

public:
    KCloudNoticeFollower();

    /// Looks which proxy there is now, and connects to it.
    void follow();

protected:
    // The last thing that is done within the suite's signal: a listener may do anything.
    virtual void takeActions(const QMap<QString, QString>& actions) = 0;
    virtual void takeLogin(bool) { }

private:
    KServiceFollower<QObject> m_events;
    KServiceFollower<KCloudSvrProxy> m_proxy;

public Q_SLOTS:
    // For the proxy. What one reports that is not the suite's any more is not passed on.
    void onNotifyActionsMapDefault(const QMap<QString, QString>& actions);
    void onLoginStatusChanged(bool isLogin);
};

} // namespace jsapi
