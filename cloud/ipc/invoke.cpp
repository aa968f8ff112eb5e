#include "cloud/ipc/invoke.h"

#include "suite/kcoreapplication.h"

IKCloudIpcService* cloudIpcService()
{
    QCoreApplication* application = QCoreApplication::instance();
    return application && application->inherits("KCoreApplication")
        ? static_cast<KCoreApplication*>(application)->cloudIpcService()
        : nullptr;
}

QString invokeCloud(
    const QString& procedure, const KCloudIpcArg& argument, QObject* receiver, const char* replySlot)
{
    IKCloudIpcService* service = cloudIpcService();
    if (!service)
        return {};
    registerCloudResultTypes();
    return service->invoke(procedure, argument, receiver, QString::fromLatin1(replySlot));
}

LarkIpcArg larkIpcArg(const QString& method, const QMap<QString, QString>& arguments)
{
    LarkIpcArg envelope;
    envelope.method = method.toStdString();
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument)
        envelope.argMap[argument.key().toStdString()] = argument.value().toStdString();
    return envelope;
}
