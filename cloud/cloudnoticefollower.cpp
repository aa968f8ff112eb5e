#include "cloud/cloudnoticefollower.h"

#include "suite/kcoreapplication.h"

namespace jsapi {

namespace {

QObject* findEventObject()
{
    KCloudSvrProxy* proxy = KCoreApplication::cloudSvrProxy();
    return proxy ? proxy->larkEventObject() : nullptr;
}

} // namespace

KCloudNoticeFollower::KCloudNoticeFollower()
    : m_events(findEventObject,
        [this](QObject& events) {
            return KServiceFollower<QObject>::Connections { connect(&events,
                SIGNAL(signal_notifyActionsMapDefault(QMap<QString, QString>)), this,
                SLOT(onNotifyActionsMapDefault(QMap<QString, QString>))) };
        })
    , m_proxy(KCoreApplication::cloudSvrProxy, [this](KCloudSvrProxy& proxy) {
        m_events.follow();
        return KServiceFollower<KCloudSvrProxy>::Connections { connect(
            &proxy, SIGNAL(loginStatusChanged(bool)), this, SLOT(onLoginStatusChanged(bool))) };
    })
{
}

void KCloudNoticeFollower::follow()
{
    m_proxy.follow();
    m_events.follow();
}

void KCloudNoticeFollower::onNotifyActionsMapDefault(const QMap<QString, QString>& actions)
{
    const QObject* sender = m_events.service();
    follow();
    if (m_events.service() == sender)
        takeActions(actions);
}

void KCloudNoticeFollower::onLoginStatusChanged(bool isLogin)
{
    const KCloudSvrProxy* sender = m_proxy.service();
    follow();
    if (m_proxy.service() == sender)
        takeLogin(isLogin);
}

} // namespace jsapi
