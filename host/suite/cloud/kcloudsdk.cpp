#include "suite/kcloudsdk.h"

#include "host/profile/profile.h"
#include "host/suite/cloud/cloudservice.h"

KCloudSdk* KCloudSdk::getInstance()
{
    static KCloudSdk sdk;
    return profile::serviceOn(QStringLiteral("cloudSdk")) ? &sdk : nullptr;
}

QString KCloudSdk::invoke(
    const QString&, const QByteArray& request, QObject* receiver, const QString& replySlot)
{
    return suite::CloudService::instance().invokeSdk(request, receiver, replySlot);
}
