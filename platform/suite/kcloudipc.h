// Requests to the cloud-document service, which runs in a process of its own.
#pragma once

#include <QString>

class QObject;

/// A request and what it is: `message` is the address of a generated message of the type named `typeName`
/// ("LarkIpcArg"), or of a KIpcLoginInfo (kipclogininfo.h) under its own name. Neither is owned.
struct KCloudIpcArg {
    const char* typeName;
    const void* message;
};

/// The way to the service, owned by the suite. [GUI thread] for all.
class IKCloudIpcService {
public:
    /// Sends a request and returns without waiting for its reply. `argument` is used only until then.
    ///
    /// Returns the request's identifier, or an empty string when the request was not sent; then there is no
    /// reply. Otherwise `replySlot` of `receiver` is called exactly once, never before this has returned,
    /// unless the receiver has gone. The slot is named without its parameters, of which it has three: whether
    /// the request has succeeded (bool), the identifier (QString), and the result (the procedure's result
    /// message by value, or for a KIpcLoginInfo a KRpcResponse, under its type's name, which the receiver has
    /// registered with Qt's meta-type system). A request that fails has a reply, too, with the result as far
    /// as it is filled.
    virtual QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) = 0;

protected:
    ~IKCloudIpcService() = default;
};
