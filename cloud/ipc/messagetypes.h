// The messages that go through the cloud IPC service, under the names by which the service and Qt know them.
#pragma once

#include "cloud/schema/lark_types.h"

// The parameters of a reply slot are matched by their text, which has no namespace.
using nova::lark::GetCloudFileCachePathArg;
using nova::lark::GetCloudFileCachePathResult;
using nova::lark::GetDefaultWorkspaceArg;
using nova::lark::GetDefaultWorkspaceResult;
using nova::lark::LarkIpcArg;
using nova::lark::LarkIpcResult;
using nova::lark::OpenVirtualCloudDiskArg;
using nova::lark::OpenVirtualCloudDiskResult;
using nova::lark::SaveToCloudDirArg;
using nova::lark::SaveToCloudDirResult;
using nova::lark::SyncFolderArg;
using nova::lark::SyncFolderResult;
using nova::lark::UploadFilesToCloudArg;
using nova::lark::UploadFilesToCloudResult;

/// The type names of the requests.
template <typename Message> inline constexpr const char* cloudTypeName = nullptr;
template <> inline constexpr const char* cloudTypeName<GetCloudFileCachePathArg> = "GetCloudFileCachePathArg";
template <> inline constexpr const char* cloudTypeName<GetDefaultWorkspaceArg> = "GetDefaultWorkspaceArg";
template <> inline constexpr const char* cloudTypeName<LarkIpcArg> = "LarkIpcArg";
template <> inline constexpr const char* cloudTypeName<OpenVirtualCloudDiskArg> = "OpenVirtualCloudDiskArg";
template <> inline constexpr const char* cloudTypeName<SaveToCloudDirArg> = "SaveToCloudDirArg";
template <> inline constexpr const char* cloudTypeName<SyncFolderArg> = "SyncFolderArg";
template <> inline constexpr const char* cloudTypeName<UploadFilesToCloudArg> = "UploadFilesToCloudArg";

/// Registers the results with Qt's meta-type system, so that replies can be queued. Those that nobody else
/// had registered are taken back when the library is unloaded. Does nothing when called again.
void registerCloudResultTypes();
