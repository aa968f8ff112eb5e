#include "cloud/clouddoceventhandle.h"

#include "suite/kcoreapplication.h"

namespace jsapi {

namespace {

QObject* findEventObject()
{
    KCloudSvrProxy* proxy = KCoreApplication::cloudSvrProxy();
    return proxy ? proxy->larkEventObject() : nullptr;
}

} // namespace

KCloudDocEventHandle::KCloudDocEventHandle(IKJSExtentionApiEvent& cloudDoc)
    : m_cloudDoc(cloudDoc)
    , m_events(findEventObject,
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

void KCloudDocEventHandle::follow()
{
    m_proxy.follow();
    m_events.follow();
}

void KCloudDocEventHandle::onNotifyActionsMapDefault(const QMap<QString, QString>& actions)
{
    const QObject* sender = m_events.service();
    follow();
    if (m_events.service() != sender)
        return;
    const QString action = actions.value(heapString("action"));
    if (action == heapString("roamingModeChanged")) {
        if (const auto mode = findChoice<RoamingMode>(actions.value(heapString("roamingMode"))))
            m_cloudDoc.send(RoamingModeEvent, { *mode });
    } else if (action == heapString("docCloudSyncStatus")) {
        SyncStatus status;
        forEachField<SyncStatus>([&](const auto& field, std::size_t) {
            const auto value = actions.find(heapString(field.name));
            if (value != actions.end())
                status.*field.member = *value;
            return true;
        });
        m_cloudDoc.send(SyncStatusEvent, status);
    }
}

void KCloudDocEventHandle::onLoginStatusChanged(bool isLogin)
{
    const KCloudSvrProxy* sender = m_proxy.service();
    follow();
    if (m_proxy.service() == sender)
        m_cloudDoc.send(LoginStatusEvent, { isLogin });
}

} // namespace jsapi
