#include "cloud/clouddoceventhandle.h"

#include "cloud/roamingmode.h"
#include "suite/kcoreapplication.h"

namespace {

QObject* eventObject()
{
    KCloudSvrProxy* proxy = KCoreApplication::cloudSvrProxy();
    return proxy ? proxy->larkEventObject() : nullptr;
}

} // namespace

KCloudDocEventHandle::KCloudDocEventHandle(IKJSExtentionApiEvent& cloudDoc)
    : m_cloudDoc(cloudDoc)
    , m_events(eventObject,
          [this](QObject& events) {
              return KServiceFollower<QObject>::Connections { connect(&events,
                  SIGNAL(signal_notifyActionsMapDefault(QMap<QString, QString>)), this,
                  SLOT(onNotifyActionsMapDefault(QMap<QString, QString>))) };
          })
    , m_proxy(KCoreApplication::cloudSvrProxy, [this](KCloudSvrProxy& proxy) {
        m_events.follow();
        return KServiceFollower<KCloudSvrProxy>::Connections { connect(
            &proxy, &KCloudSvrProxy::loginStatusChanged, this, &KCloudDocEventHandle::onLoginStatusChanged) };
    })
{
}

void KCloudDocEventHandle::follow()
{
    m_proxy.follow();
    m_events.follow();
}

void KCloudDocEventHandle::onNotifyActionsMapDefault(const QMap<QString, QString>& actions)
{
    const QObject* teller = m_events.service();
    follow();
    if (m_events.service() != teller)
        return;
    const QString action = actions.value(ownText("action"));
    if (action == ownText("roamingModeChanged")) {
        const QString mode = actions.value(ownText("roamingMode"));
        if (isRoamingMode(mode))
            m_cloudDoc.tell(RoamingModeEvent, { { ownText("roamingMode"), mode } });
    } else if (action == ownText("docCloudSyncStatus")) {
        QVariantMap status;
        for (const char* name : { "fileId", "cloudPath", "localPath", "status", "taskId" }) {
            if (const auto told = actions.find(ownText(name)); told != actions.end())
                status.insert(told.key(), told.value());
        }
        m_cloudDoc.tell(SyncStatusEvent, status);
    }
}

void KCloudDocEventHandle::onLoginStatusChanged(bool isLogin)
{
    const KCloudSvrProxy* teller = m_proxy.service();
    follow();
    if (m_proxy.service() == teller)
        m_cloudDoc.tell(LoginStatusEvent, { { ownText("isLogin"), isLogin } });
}
