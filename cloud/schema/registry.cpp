#include "cloud/schema/registry.h"

#include "cloud/schema/lark_types.h"
#include "cloud/schema/orbitapi_types.h"

#include <algorithm>

namespace cloud {

namespace {

template <typename Message> constexpr MessageType type(std::string_view name)
{
    return { name, []() -> std::shared_ptr<void> { return std::make_shared<Message>(); },
        [](const void* message, apache::thrift::protocol::TProtocol& protocol) {
            static_cast<const Message*>(message)->Message::write(&protocol);
        },
        [](void* message, apache::thrift::protocol::TProtocol& protocol) {
            static_cast<Message*>(message)->Message::read(&protocol);
        } };
}

using namespace nova::lark;
using namespace orbitapi;

/// By ascending names. Records that only occur within messages are not listed.
constexpr MessageType Types[] {
    type<CommonRequestArg>("CommonRequestArg"),
    type<DirectJsonResult>("DirectJsonResult"),
    type<GetCloudFileCachePathArg>("GetCloudFileCachePathArg"),
    type<GetCloudFileCachePathResult>("GetCloudFileCachePathResult"),
    type<GetDefaultWorkspaceArg>("GetDefaultWorkspaceArg"),
    type<GetDefaultWorkspaceResult>("GetDefaultWorkspaceResult"),
    type<GetRpcReqStateArg>("GetRpcReqStateArg"),
    type<GetRpcReqStateResult>("GetRpcReqStateResult"),
    type<LarkIpcArg>("LarkIpcArg"),
    type<LarkIpcResult>("LarkIpcResult"),
    type<NotifyLarkRpcExceptionArg>("NotifyLarkRpcExceptionArg"),
    type<OpenVirtualCloudDiskArg>("OpenVirtualCloudDiskArg"),
    type<OpenVirtualCloudDiskResult>("OpenVirtualCloudDiskResult"),
    type<OrbitApiResult>("OrbitApiResult"),
    type<RequestBaseInfo>("RequestBaseInfo"),
    type<ResultMsgResult>("ResultMsgResult"),
    type<SaveToCloudDirArg>("SaveToCloudDirArg"),
    type<SaveToCloudDirResult>("SaveToCloudDirResult"),
    type<SyncFolderArg>("SyncFolderArg"),
    type<SyncFolderResult>("SyncFolderResult"),
    type<UploadFilesToCloudArg>("UploadFilesToCloudArg"),
    type<UploadFilesToCloudResult>("UploadFilesToCloudResult"),
};
static_assert(std::ranges::is_sorted(Types, {}, &MessageType::name));

} // namespace

const MessageType* findMessageType(std::string_view name)
{
    const auto* found = std::ranges::lower_bound(Types, name, {}, &MessageType::name);
    return found != std::end(Types) && found->name == name ? found : nullptr;
}

std::span<const MessageType> messageTypes()
{
    return Types;
}

} // namespace cloud
