#include "cloud/ipc/larkipcwrapper.h"

template QString KLarkIpcWrapper::call<LarkIpcResult>(
    const QString& procedure, const LarkIpcArg& argument, Callback<LarkIpcResult> callback);

QString KLarkIpcWrapper::keep(const QString& requestId, PendingCallback callback)
{
    // Whatever an earlier callback owns goes last: it may own the wrapper.
    if (!requestId.isEmpty())
        m_pending[requestId].swap(callback);
    return requestId;
}

void KLarkIpcWrapper::onResponse(bool success, const QString& requestId, const void* result)
{
    // Taken out before it is called: it may call again, throw, or destroy the wrapper.
    if (const PendingCallback callback = m_pending.take(requestId))
        callback(success, requestId, result);
}

void KLarkIpcWrapper::onResponse(bool success, const QString& requestId, const LarkIpcResult& result)
{
    onResponse(success, requestId, static_cast<const void*>(&result));
}

void KLarkIpcWrapper::onResponse(bool success, const QString& requestId, const SyncFolderResult& result)
{
    onResponse(success, requestId, static_cast<const void*>(&result));
}
