#include "cloud/clouddoceventhandle.h"

namespace jsapi {

void KCloudDocEventHandle::takeActions(const QMap<QString, QString>& actions)
{
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

void KCloudDocEventHandle::takeLogin(bool isLogin)
{
    m_cloudDoc.send(LoginStatusEvent, { isLogin });
}

} // namespace jsapi
