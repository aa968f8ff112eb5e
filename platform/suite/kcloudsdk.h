// Requests to the cloud SDK of the suite, which sends them to the cloud's servers.
#pragma once

#include <QByteArray>
#include <QString>

class QObject;

/// Its layout is the suite's own, since only the functions below are called, none of them virtual. [GUI thread] for all;
/// throws nothing.
class KCloudSdk {
public:
    /// Owned by the suite, which may end it or make it later: ask every time. Null when there is none.
    static KCloudSdk* getInstance();

    /// Sends a request and returns without waiting for its reply. `request` are the bytes of a CommonRequestArg of the
    /// namespace `orbitapi` in Thrift's compact protocol, without a header or a length. `requestKey` is that of its
    /// baseInfo.
    ///
    /// Returns the request's identifier, or an empty string when it was not sent; then there is no reply. Otherwise the
    /// slot `replySlot` (a name without parameters) of `receiver` is called exactly once, never before this has returned,
    /// unless the receiver has gone: with whether the request has succeeded (bool), the identifier (QString) and the bytes
    /// of an OrbitApiResult (QByteArray), likewise. A request without a reply has no bytes.
    QString invoke(
        const QString& requestKey, const QByteArray& request, QObject* receiver, const QString& replySlot);
};
