// The messages that go through the cloud IPC service, under the names by which the service and Qt know them.
#pragma once

#include "cloud/schema/lark_types.h"
#include "suite/kipclogininfo.h"

/// The name of a message's type.
template <typename Message> inline constexpr const char* cloudTypeName = nullptr;

#define CLOUD_TYPE(Type) template <> inline constexpr const char* cloudTypeName<Type> = #Type;
// The parameters of a reply slot are matched by their spelling, which has no namespace.
#define CLOUD_MESSAGE(Message)                                                                               \
    using nova::lark::Message;                                                                               \
    CLOUD_TYPE(Message)

CLOUD_MESSAGE(GetCloudFileCachePathArg)
CLOUD_MESSAGE(GetCloudFileCachePathResult)
CLOUD_MESSAGE(GetDefaultWorkspaceArg)
CLOUD_MESSAGE(GetDefaultWorkspaceResult)
CLOUD_MESSAGE(LarkIpcArg)
CLOUD_MESSAGE(LarkIpcResult)
CLOUD_MESSAGE(OpenVirtualCloudDiskArg)
CLOUD_MESSAGE(OpenVirtualCloudDiskResult)
CLOUD_MESSAGE(SaveToCloudDirArg)
CLOUD_MESSAGE(SaveToCloudDirResult)
CLOUD_MESSAGE(SyncFolderArg)
CLOUD_MESSAGE(SyncFolderResult)
CLOUD_MESSAGE(UploadFilesToCloudArg)
CLOUD_MESSAGE(UploadFilesToCloudResult)
// The suite's own.
CLOUD_TYPE(KIpcLoginInfo)
CLOUD_TYPE(KRpcResponse)

#undef CLOUD_MESSAGE
#undef CLOUD_TYPE

/// Registers the results with Qt's meta-type system, so that replies can be queued. Those that nobody else
/// had registered are taken back when the library is unloaded. Does nothing when called again.
void registerCloudResultTypes();
