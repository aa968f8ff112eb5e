// One request of a page to the cloud-document service, from the call until its reply.
#pragma once

#include "cloud/cloudoperations.h"
#include "cloud/ipc/invoke.h"
#include "framework/request.h"

namespace jsapi {

inline constexpr Failure CallFailed { ErrorCode::OperationFailed, "Call %1 failed." };
inline constexpr Failure PromiseServiceError { ErrorCode::OperationFailed, "Promise Service error." };

/// What settles a promise with the reply of the service. [GUI thread]
class KCloudRequest : public KJsRequest {
protected:
    /// Sends a request whose reply goes to a slot of `caller`. Fails with CallFailed (the service refused the request) and
    /// PromiseServiceError.
    template <typename Value, typename Request>
    static Answer<Promise<Value>> send(const JSContextEnv& page, std::unique_ptr<KCloudRequest> caller,
        const QString& procedure, const Request& request, const char* replySlot)
    {
        KCloudRequest& receiver = *caller;
        if (invokeCloud(procedure, request, &receiver, replySlot).isEmpty())
            return CallFailed / procedure;
        return promise<Value>(page, std::move(caller), PromiseServiceError);
    }

    template <typename Request, typename Result, typename Value>
    void settle(const CloudOperation<Request, Result, Value>& operation, bool ok, const Result& result)
    {
        const std::optional<Value> value = ok ? operation.read(result) : std::nullopt;
        if (value)
            resolve(toVariant(*value));
        else
            reject(operation.failure);
    }
};

/// Sends the request of an operation; the reply settles the promise that is returned. [GUI thread]
class KCloudDocApiCaller final : public KCloudRequest {
    Q_OBJECT

public:
    template <typename Request, typename Result, typename Value>
    static Answer<Promise<Value>> send(const JSContextEnv& page,
        const CloudOperation<Request, Result, Value>& operation, const Request& request)
    {
        return send<Value>(page, heapString(operation.procedure), request, operation.replySlot, QString());
    }
    /// The same for a method of the general envelope, which takes the user's id.
    template <typename Value>
    static Answer<Promise<Value>> send(const JSContextEnv& page,
        const CloudOperation<LarkIpcArg, LarkIpcResult, Value>& operation, const QString& userId)
    {
        const LarkIpcArg envelope =
            larkIpcArg(heapString(operation.procedure), { { heapString("userId"), userId } });
        return send<Value>(page, QString::fromUtf16(LarkIpcCall), envelope, operation.replySlot, QString());
    }
    /// The promise resolves with the mode that the reply names, or else with `mode`.
    static Answer<Promise<RoamingMode>> changeRoamingMode(
        const JSContextEnv& page, const QString& userId, RoamingMode mode);

private:
    template <typename Value, typename Request>
    static Answer<Promise<Value>> send(const JSContextEnv& page, const QString& procedure,
        const Request& request, const char* replySlot, const QString& wantedMode)
    {
        auto caller = std::make_unique<KCloudDocApiCaller>();
        caller->m_wantedMode = wantedMode;
        return KCloudRequest::send<Value>(page, std::move(caller), procedure, request, replySlot);
    }

    QString m_wantedMode;

public Q_SLOTS:
    // For the service, once.
    void onGetFileCacheInfo(bool ok, const QString& requestId, const GetCloudFileCachePathResult& result);
    void onFileSynced(bool ok, const QString& requestId, const UploadFilesToCloudResult& result);
    void onOpenFolderFinished(bool ok, const QString& requestId, const OpenVirtualCloudDiskResult& result);
    void onGetDefaultWorkspace(bool ok, const QString& requestId, const GetDefaultWorkspaceResult& result);
    void onSaveToCloudDir(bool ok, const QString& requestId, const SaveToCloudDirResult& result);
    void onSyncFolderFinished(bool ok, const QString& requestId, const SyncFolderResult& result);
    void onGetPersonalPrivateGroup(bool ok, const QString& requestId, const LarkIpcResult& result);
    void onGetMyCloudDocumentsLocalPath(bool ok, const QString& requestId, const LarkIpcResult& result);
    void onGetRoamingMode(bool ok, const QString& requestId, const LarkIpcResult& result);
    void onChangeRoamingMode(bool ok, const QString& requestId, const KRpcResponse& response);
};

} // namespace jsapi
