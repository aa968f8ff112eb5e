// One request of a page to the cloud-document service, from the call until its reply.
#pragma once

#include "cloud/ipc/messagetypes.h"
#include "framework/request.h"

/// Each operation sends its request and answers the call with a promise, which the reply settles. Failures,
/// all 3: "Call %1 failed." (%1 the procedure: the service refused the request), "Promise Service error.". A
/// reply that says that the request failed, or has a state other than 0 where nothing else is said, rejects
/// with the operation's text. [GUI thread]
class KCloudDocApiCaller final : public KJsRequest {
    Q_OBJECT

public:
    /// -> the path of the local copy, whatever the state. "Get file cache info failed."
    static Reply getFileCachePath(Call& call, const GetCloudFileCachePathArg& request);
    /// -> {userData, extraParam}. "Sync files failed."
    static Reply uploadFiles(Call& call, const UploadFilesToCloudArg& request);
    /// -> {extraParam}. "open folder failed."
    static Reply openFolder(Call& call, const OpenVirtualCloudDiskArg& request);
    /// -> {isEnterpriseIP, uploadCloudPath, showCloudPath, groupId}. "Get default workspace failed."
    static Reply getDefaultWorkspace(Call& call, const GetDefaultWorkspaceArg& request);
    /// -> {cloudPath, extraParam}. "Save to cloud dir failed."
    static Reply saveToCloudDir(Call& call, const SaveToCloudDirArg& request);
    /// -> {extraParam}. "Sync folder failed."
    static Reply syncFolder(Call& call, const SyncFolderArg& request);
    /// -> the text "response" of the reply, whatever the state. "Get personal private group failed.", also
    /// without such a text.
    static Reply getPersonalPrivateGroup(Call& call, const QString& userId);
    /// -> the path. "Get my cloud documents local path failed."
    static Reply getMyCloudDocumentsLocalPath(Call& call, const QString& userId);
    /// -> "auto" or "manual". "Get roaming mode failed.", also for any other answer.
    static Reply getRoamingMode(Call& call, const QString& userId);
    /// `mode` is one of the two. -> the mode now in force: the one that the reply names, or else `mode`.
    /// "Change roaming mode failed."
    static Reply changeRoamingMode(Call& call, const QString& userId, const QString& mode);

private:
    template <typename Request>
    static Reply send(Call& call, const QString& procedure, const Request& request, const char* replySlot,
        const QString& wanted = {});

    void settle(bool ok, const QVariant& value, const char* failure);

    QString m_wanted; ///< what a reply without a value stands for

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
