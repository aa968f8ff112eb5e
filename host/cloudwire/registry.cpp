#include "host/cloudwire/registry.h"

#include "cloud/schema/lark_types.h"
#include "cloud/schema/orbitapi_types.h"

#include <algorithm>
#include <array>

namespace cloudwire {

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

#define TYPE(Message) type<Message>(#Message)

/// Sorted by name. Records that occur only within messages are not listed.
constexpr MessageType Types[] {
    TYPE(CommonRequestArg),
    TYPE(DirectJsonResult),
    TYPE(GetCloudFileCachePathArg),
    TYPE(GetCloudFileCachePathResult),
    TYPE(GetDefaultWorkspaceArg),
    TYPE(GetDefaultWorkspaceResult),
    TYPE(GetRpcReqStateArg),
    TYPE(GetRpcReqStateResult),
    TYPE(LarkIpcArg),
    TYPE(LarkIpcResult),
    TYPE(NotifyLarkRpcExceptionArg),
    TYPE(OpenVirtualCloudDiskArg),
    TYPE(OpenVirtualCloudDiskResult),
    TYPE(OrbitApiResult),
    TYPE(RequestBaseInfo),
    TYPE(ResultMsgResult),
    TYPE(SaveToCloudDirArg),
    TYPE(SaveToCloudDirResult),
    TYPE(SyncFolderArg),
    TYPE(SyncFolderResult),
    TYPE(UploadFilesToCloudArg),
    TYPE(UploadFilesToCloudResult),
};
#undef TYPE
static_assert(std::ranges::is_sorted(Types, {}, &MessageType::name));

constexpr std::size_t SlotCount = 128;
static_assert(2 * std::size(Types) <= SlotCount);

/// A hash of the length and two letters: most names begin and end alike.
constexpr std::size_t firstSlot(std::string_view name)
{
    const auto letter = [&](std::size_t at) -> std::size_t { return static_cast<unsigned char>(name[at]); };
    return name.empty() ? 0 : (name.size() + 5 * letter(0) + 3 * letter(name.size() / 2)) % SlotCount;
}

/// A hash table with linear probing.
constexpr auto Slots = [] {
    std::array<const MessageType*, SlotCount> slots {};
    for (const MessageType& type : Types) {
        std::size_t at = firstSlot(type.name);
        while (slots[at])
            at = (at + 1) % SlotCount;
        slots[at] = &type;
    }
    return slots;
}();

} // namespace

const MessageType* findMessageType(std::string_view name)
{
    for (std::size_t at = firstSlot(name); Slots[at]; at = (at + 1) % SlotCount)
        if (Slots[at]->name == name)
            return Slots[at];
    return nullptr;
}

std::span<const MessageType> messageTypes()
{
    return Types;
}

} // namespace cloudwire
