// Sending a request to the cloud-document service.
#pragma once

#include "cloud/ipc/messagetypes.h"
#include "suite/kcloudipc.h"

#include <QMap>
#include <QString>

class QObject;

/// The suite's service, or null: also where the application is not the suite's own. [GUI thread]
IKCloudIpcService* cloudIpcService();

/// Has the suite's service send a request. Returns its identifier, or an empty string when there is no service
/// or it refuses. The reply comes to the slot `replySlot` (a name without parameters) of `receiver`.
QString invokeCloud(
    const QString& procedure, const KCloudIpcArg& argument, QObject* receiver, const char* replySlot);

template <typename Message>
QString invokeCloud(
    const QString& procedure, const Message& argument, QObject* receiver, const char* replySlot)
{
    static_assert(cloudTypeName<Message> != nullptr, "This message has no name in messagetypes.h.");
    return invokeCloud(procedure, KCloudIpcArg { cloudTypeName<Message>, &argument }, receiver, replySlot);
}

/// The procedure that takes a generic envelope.
inline constexpr char16_t LarkIpcCall[] = u"larkIpcCall";

/// An envelope for the service's operation `method`.
LarkIpcArg larkIpcArg(const QString& method, const QMap<QString, QString>& arguments);
