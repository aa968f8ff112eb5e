#include "cloud/clouddocapicaller.h"

namespace jsapi {

Answer<Promise<RoamingMode>> KCloudDocApiCaller::changeRoamingMode(
    const JSContextEnv& page, const QString& userId, RoamingMode mode)
{
    const auto& operation = CloudOperations::ChangeRoamingMode;
    const QString name = toVariant(mode).toString();
    return send<RoamingMode>(page, heapString(operation.procedure),
        KIpcLoginInfo::makeRomaingMode(userId, name), operation.replySlot, name);
}

void KCloudDocApiCaller::onGetFileCacheInfo(
    bool ok, const QString&, const GetCloudFileCachePathResult& result)
{
    settle(CloudOperations::FileCachePath, ok, result);
}

void KCloudDocApiCaller::onFileSynced(bool ok, const QString&, const UploadFilesToCloudResult& result)
{
    settle(CloudOperations::UploadFiles, ok, result);
}

void KCloudDocApiCaller::onOpenFolderFinished(
    bool ok, const QString&, const OpenVirtualCloudDiskResult& result)
{
    settle(CloudOperations::OpenFolder, ok, result);
}

void KCloudDocApiCaller::onGetDefaultWorkspace(
    bool ok, const QString&, const GetDefaultWorkspaceResult& result)
{
    settle(CloudOperations::DefaultWorkspace, ok, result);
}

void KCloudDocApiCaller::onSaveToCloudDir(bool ok, const QString&, const SaveToCloudDirResult& result)
{
    settle(CloudOperations::SaveToCloudDir, ok, result);
}

void KCloudDocApiCaller::onSyncFolderFinished(bool ok, const QString&, const SyncFolderResult& result)
{
    settle(CloudOperations::SyncFolder, ok, result);
}

void KCloudDocApiCaller::onGetPersonalPrivateGroup(bool ok, const QString&, const LarkIpcResult& result)
{
    settle(CloudOperations::PersonalPrivateGroup, ok, result);
}

void KCloudDocApiCaller::onGetMyCloudDocumentsLocalPath(bool ok, const QString&, const LarkIpcResult& result)
{
    settle(CloudOperations::MyCloudDocumentsLocalPath, ok, result);
}

void KCloudDocApiCaller::onGetRoamingMode(bool ok, const QString&, const LarkIpcResult& result)
{
    settle(CloudOperations::GetRoamingMode, ok, result);
}

void KCloudDocApiCaller::onChangeRoamingMode(bool ok, const QString&, const KRpcResponse& response)
{
    KRpcResponse whole = response;
    if (!whole.values.contains(heapString("roamingMode")))
        whole.values.insert(heapString("roamingMode"), m_wantedMode);
    settle(CloudOperations::ChangeRoamingMode, ok, whole);
}

} // namespace jsapi
