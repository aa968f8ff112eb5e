// What pages can request of the cloud-document service: one row an operation.
#pragma once

#include "cloud/ipc/messagetypes.h"
#include "cloud/roamingmode.h"
#include "framework/answer.h"

namespace jsapi {

/// An operation: its procedure, the caller's slot for the reply (KCloudDocApiCaller), how the promise is
/// rejected when the reply says that the operation failed, and the promise's value, nothing for a reply that
/// has none.
template <typename Request, typename Result, typename Value> struct CloudOperation {
    const char* procedure;
    const char* replySlot;
    Failure failure;
    std::optional<Value> (*read)(const Result& result);
};

using Strings = std::map<std::string, std::string>;

struct UploadReport {
    std::string userData;
    Strings extraParam;
    static constexpr auto fields()
    {
        return std::tuple(property("userData", &UploadReport::userData, "as it was given"),
            property("extraParam", &UploadReport::extraParam, "what the service adds"));
    }
};

struct ServiceReport {
    Strings extraParam;
    static constexpr auto fields()
    {
        return std::tuple(property("extraParam", &ServiceReport::extraParam, "what the service adds"));
    }
};

struct SaveReport {
    std::string cloudPath;
    Strings extraParam;
    static constexpr auto fields()
    {
        return std::tuple(property("cloudPath", &SaveReport::cloudPath, "where the file is in the cloud"),
            property("extraParam", &SaveReport::extraParam, "what the service adds"));
    }
};

struct Workspace {
    bool isEnterpriseIP;
    std::string uploadCloudPath;
    std::string showCloudPath;
    std::string groupId;
    static constexpr auto fields()
    {
        using Self = Workspace;
        return std::tuple(property("isEnterpriseIP", &Self::isEnterpriseIP,
                              "whether this machine is in the network of the user's company"),
            property("uploadCloudPath", &Self::uploadCloudPath, "the folder that uploads go to"),
            property("showCloudPath", &Self::showCloudPath, "the same, as users see it"),
            property("groupId", &Self::groupId, "the group that the folder belongs to"));
    }
};

namespace CloudOperations {

constexpr Failure rejection(const char* text)
{
    return { ErrorCode::OperationFailed, text, true };
}

template <typename Value, typename Result>
std::optional<Value> valueOnSuccess(const Result& result, const Value& value)
{
    return result.state == 0 ? std::optional(value) : std::nullopt;
}

std::optional<Workspace> readWorkspace(const GetDefaultWorkspaceResult& result);
std::optional<std::string> readResponse(const LarkIpcResult& result);
std::optional<RoamingMode> readRoamingMode(const LarkIpcResult& result);
std::optional<RoamingMode> readChangedMode(const KRpcResponse& response);

// Procedures with messages of their own.

inline constexpr CloudOperation<GetCloudFileCachePathArg, GetCloudFileCachePathResult, std::string>
    FileCachePath { "getCloudFileCachePath", "onGetFileCacheInfo", rejection("Get file cache info failed."),
        [](const auto& result) { return std::optional(result.localPath); } };

inline constexpr CloudOperation<UploadFilesToCloudArg, UploadFilesToCloudResult, UploadReport> UploadFiles {
    "uploadFilesToCloud", "onFileSynced", rejection("Sync files failed."),
    [](const auto& result) {
        return valueOnSuccess(result, UploadReport { result.userData, result.extraParam });
    }
};

inline constexpr CloudOperation<OpenVirtualCloudDiskArg, OpenVirtualCloudDiskResult, ServiceReport>
    OpenFolder { "openVirtualCloudDisk", "onOpenFolderFinished", rejection("open folder failed."),
        [](const auto& result) { return valueOnSuccess(result, ServiceReport { result.extraParam }); } };

inline constexpr CloudOperation<GetDefaultWorkspaceArg, GetDefaultWorkspaceResult, Workspace>
    DefaultWorkspace { "getDefaultWorkspace", "onGetDefaultWorkspace",
        rejection("Get default workspace failed."), readWorkspace };

inline constexpr CloudOperation<SaveToCloudDirArg, SaveToCloudDirResult, SaveReport> SaveToCloudDir {
    "saveToCloudDir", "onSaveToCloudDir", rejection("Save to cloud dir failed."),
    [](const auto& result) {
        return valueOnSuccess(result, SaveReport { result.cloudPath, result.extraParam });
    }
};

inline constexpr CloudOperation<SyncFolderArg, SyncFolderResult, ServiceReport> SyncFolder { "syncFolder",
    "onSyncFolderFinished", rejection("Sync folder failed."),
    [](const auto& result) { return valueOnSuccess(result, ServiceReport { result.extraParam }); } };

inline constexpr CloudOperation<KIpcLoginInfo, KRpcResponse, RoamingMode> ChangeRoamingMode {
    "changeRoamingMode", "onChangeRoamingMode", rejection("Change roaming mode failed."), readChangedMode
};

// Methods of the general envelope, whose procedure they all share.

inline constexpr CloudOperation<LarkIpcArg, LarkIpcResult, std::string> PersonalPrivateGroup {
    "getPersonalPrivateGroup", "onGetPersonalPrivateGroup", rejection("Get personal private group failed."),
    readResponse
};

inline constexpr CloudOperation<LarkIpcArg, LarkIpcResult, std::string> MyCloudDocumentsLocalPath {
    "getMyCloudDocumentsLocalPath", "onGetMyCloudDocumentsLocalPath",
    rejection("Get my cloud documents local path failed."),
    [](const auto& result) { return valueOnSuccess(result, result.resultString); }
};

inline constexpr CloudOperation<LarkIpcArg, LarkIpcResult, RoamingMode> GetRoamingMode { "getRoamingMode",
    "onGetRoamingMode", rejection("Get roaming mode failed."), readRoamingMode };

inline constexpr CloudOperation<LarkIpcArg, LarkIpcResult, ServiceReport> UpdateClassifyLabelStatus {
    "updateClassifyLabelStatus", "slot_statusUpdated", rejection("Update classify label status failed."),
    [](const auto& result) { return valueOnSuccess(result, ServiceReport { result.resultMap }); }
};

} // namespace CloudOperations

} // namespace jsapi
