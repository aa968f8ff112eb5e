// A callback for each request to the cloud-document service, in place of a reply slot.
#pragma once

#include "cloud/ipc/invoke.h"

#include <QMap>
#include <QObject>
#include <functional>

/// A member of the object that sends the requests. Destroying it destroys the callbacks that still wait,
/// uncalled. [GUI thread]
class KLarkIpcWrapper final : public QObject {
    Q_OBJECT

public:
    template <typename Result>
    using Callback = std::function<void(bool success, const QString& requestId, const Result& result)>;

    /// Sends a request; `Result` is the procedure's. Returns its identifier, or an empty string when it was not
    /// sent, and then `callback` is not called. Otherwise `callback`, which must not be empty, is called with
    /// the reply, unless another request gets the same identifier before. It may destroy the wrapper.
    template <typename Result, typename Argument>
    QString call(const QString& procedure, const Argument& argument, Callback<Result> callback)
    {
        return keep(invokeCloud(procedure, argument, this, "onResponse"),
            [callback = std::move(callback)](bool success, const QString& requestId, const void* result) {
                callback(success, requestId, *static_cast<const Result*>(result));
            });
    }

    // For the service. `result` is of the type that the procedure of the request has; a reply to a request
    // that is not known, or no longer, is ignored.
    Q_SLOT void onResponse(bool success, const QString& requestId, const void* result);
    Q_SLOT void onResponse(bool success, const QString& requestId, const LarkIpcResult& result);
    Q_SLOT void onResponse(bool success, const QString& requestId, const SyncFolderResult& result);

private:
    using PendingCallback = std::function<void(bool, const QString&, const void*)>;

    QString keep(const QString& requestId, PendingCallback callback);

    QMap<QString, PendingCallback> m_pending;
};

extern template QString KLarkIpcWrapper::call<LarkIpcResult>(
    const QString& procedure, const LarkIpcArg& argument, Callback<LarkIpcResult> callback);
