#include "host/suite/cloud/cloudsvrproxy.h"

#include "host/profile/profile.h"
#include "host/suite/cloud/cloudservice.h"
#include "suite/kcoreapplication.h"

namespace suite {

CloudSvrProxy& CloudSvrProxy::instance()
{
    // Never destroyed: a library that stays loaded would look for another one when there is no application any more.
    static auto* proxy = new CloudSvrProxy;
    return *proxy;
}

void CloudSvrProxy::notifyActions(const QMap<QString, QString>& actions)
{
    Q_EMIT m_events.signal_notifyActionsMapDefault(actions);
}

void CloudSvrProxy::setLogin(bool isLogin)
{
    if (std::exchange(m_isLogin, isLogin) != isLogin)
        Q_EMIT loginStatusChanged(isLogin);
}

} // namespace suite

KCloudSvrProxy* KCoreApplication::cloudSvrProxy()
{
    if (!profile::serviceOn(QStringLiteral("cloudProxy")))
        return nullptr;
    // The caller expects events, which come from the process.
    if (profile::serviceOn(QStringLiteral("cloudIpc")) && profile::serviceOn(QStringLiteral("cloudRequests")))
        suite::CloudService::instance().ensureProcess();
    return &suite::CloudSvrProxy::instance();
}
