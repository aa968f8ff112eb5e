#include "cloud/clouddocapicaller.h"

#include "cloud/ipc/invoke.h"
#include "cloud/roamingmode.h"

namespace {

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

QVariantMap textMap(const std::map<std::string, std::string>& texts)
{
    QVariantMap map;
    for (const auto& [key, value] : texts)
        map.insert(text(key), text(value));
    return map;
}

QMap<QString, QString> ofUser(const QString& userId)
{
    return { { ownText("userId"), userId } };
}

} // namespace

template <typename Request>
Reply KCloudDocApiCaller::send(Call& call, const QString& procedure, const Request& request,
    const char* replySlot, const QString& wanted)
{
    auto caller = std::make_unique<KCloudDocApiCaller>();
    caller->m_wanted = wanted;
    if (invokeCloud(procedure, request, caller.get(), replySlot).isEmpty())
        return call.fail(ErrorCode::OperationFailed, QString::fromLatin1("Call %1 failed.").arg(procedure));
    return promised(call, std::move(caller), "Promise Service error.");
}

Reply KCloudDocApiCaller::getFileCachePath(Call& call, const GetCloudFileCachePathArg& request)
{
    return send(call, ownText("getCloudFileCachePath"), request, "onGetFileCacheInfo");
}

Reply KCloudDocApiCaller::uploadFiles(Call& call, const UploadFilesToCloudArg& request)
{
    return send(call, ownText("uploadFilesToCloud"), request, "onFileSynced");
}

Reply KCloudDocApiCaller::openFolder(Call& call, const OpenVirtualCloudDiskArg& request)
{
    return send(call, ownText("openVirtualCloudDisk"), request, "onOpenFolderFinished");
}

Reply KCloudDocApiCaller::getDefaultWorkspace(Call& call, const GetDefaultWorkspaceArg& request)
{
    return send(call, ownText("getDefaultWorkspace"), request, "onGetDefaultWorkspace");
}

Reply KCloudDocApiCaller::saveToCloudDir(Call& call, const SaveToCloudDirArg& request)
{
    return send(call, ownText("saveToCloudDir"), request, "onSaveToCloudDir");
}

Reply KCloudDocApiCaller::syncFolder(Call& call, const SyncFolderArg& request)
{
    return send(call, ownText("syncFolder"), request, "onSyncFolderFinished");
}

Reply KCloudDocApiCaller::getPersonalPrivateGroup(Call& call, const QString& userId)
{
    return send(call, QString::fromUtf16(LarkIpcCall),
        larkIpcArg(ownText("getPersonalPrivateGroup"), ofUser(userId)), "onGetPersonalPrivateGroup");
}

Reply KCloudDocApiCaller::getMyCloudDocumentsLocalPath(Call& call, const QString& userId)
{
    return send(call, QString::fromUtf16(LarkIpcCall),
        larkIpcArg(ownText("getMyCloudDocumentsLocalPath"), ofUser(userId)),
        "onGetMyCloudDocumentsLocalPath");
}

Reply KCloudDocApiCaller::getRoamingMode(Call& call, const QString& userId)
{
    return send(call, QString::fromUtf16(LarkIpcCall), larkIpcArg(ownText("getRoamingMode"), ofUser(userId)),
        "onGetRoamingMode");
}

Reply KCloudDocApiCaller::changeRoamingMode(Call& call, const QString& userId, const QString& mode)
{
    return send(call, ownText("changeRoamingMode"), KIpcLoginInfo::makeRomaingMode(userId, mode),
        "onChangeRoamingMode", mode);
}

void KCloudDocApiCaller::settle(bool ok, const QVariant& value, const char* failure)
{
    if (ok)
        finish(value);
    else
        finishRejected(QString::fromLatin1(failure));
}

void KCloudDocApiCaller::onGetFileCacheInfo(
    bool ok, const QString&, const GetCloudFileCachePathResult& result)
{
    settle(ok, text(result.localPath), "Get file cache info failed.");
}

void KCloudDocApiCaller::onFileSynced(bool ok, const QString&, const UploadFilesToCloudResult& result)
{
    settle(ok && result.state == 0,
        QVariantMap { { ownText("userData"), text(result.userData) },
            { ownText("extraParam"), textMap(result.extraParam) } },
        "Sync files failed.");
}

void KCloudDocApiCaller::onOpenFolderFinished(
    bool ok, const QString&, const OpenVirtualCloudDiskResult& result)
{
    settle(ok && result.state == 0, QVariantMap { { ownText("extraParam"), textMap(result.extraParam) } },
        "open folder failed.");
}

void KCloudDocApiCaller::onGetDefaultWorkspace(
    bool ok, const QString&, const GetDefaultWorkspaceResult& result)
{
    const QString enterprise = textMap(result.extraParam).value(ownText("isEnterpriseIP")).toString();
    settle(ok && result.state == 0,
        QVariantMap {
            { ownText("isEnterpriseIP"), enterprise == ownText("true") || enterprise == ownText("1") },
            { ownText("uploadCloudPath"), text(result.cloudPath) },
            { ownText("showCloudPath"), text(result.virtualPath) },
            { ownText("groupId"), text(result.groupId) } },
        "Get default workspace failed.");
}

void KCloudDocApiCaller::onSaveToCloudDir(bool ok, const QString&, const SaveToCloudDirResult& result)
{
    settle(ok && result.state == 0,
        QVariantMap { { ownText("cloudPath"), text(result.cloudPath) },
            { ownText("extraParam"), textMap(result.extraParam) } },
        "Save to cloud dir failed.");
}

void KCloudDocApiCaller::onSyncFolderFinished(bool ok, const QString&, const SyncFolderResult& result)
{
    settle(ok && result.state == 0, QVariantMap { { ownText("extraParam"), textMap(result.extraParam) } },
        "Sync folder failed.");
}

void KCloudDocApiCaller::onGetPersonalPrivateGroup(bool ok, const QString&, const LarkIpcResult& result)
{
    const auto response = result.resultMap.find("response");
    const bool found = ok && response != result.resultMap.end();
    settle(found, found ? text(response->second) : QString(), "Get personal private group failed.");
}

void KCloudDocApiCaller::onGetMyCloudDocumentsLocalPath(bool ok, const QString&, const LarkIpcResult& result)
{
    settle(ok && result.state == 0, text(result.resultString), "Get my cloud documents local path failed.");
}

void KCloudDocApiCaller::onGetRoamingMode(bool ok, const QString&, const LarkIpcResult& result)
{
    const QString mode = text(result.resultString);
    settle(ok && result.state == 0 && isRoamingMode(mode), mode, "Get roaming mode failed.");
}

void KCloudDocApiCaller::onChangeRoamingMode(bool ok, const QString&, const KRpcResponse& response)
{
    const QString mode = response.values.value(ownText("roamingMode"), m_wanted);
    settle(ok && response.code == 0 && isRoamingMode(mode), mode, "Change roaming mode failed.");
}
