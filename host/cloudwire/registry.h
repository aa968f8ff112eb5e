// Finds the types of cloud messages by name.
#pragma once

#include <memory>
#include <span>
#include <string_view>

namespace apache::thrift::protocol {
class TProtocol;
}

namespace cloudwire {

/// The operations on messages of a type that is known by its name only. [any thread]
struct MessageType {
    std::string_view name; ///< zero-terminated: "LarkIpcArg"
    /// Makes a message whose members have their defaults.
    std::shared_ptr<void> (*make)();
    // With a protocol of Thrift, which throws its exceptions; MessageCodec (codec.h) uses the compact one.
    // `message` is the address of a complete message of this type.
    void (*write)(const void* message, apache::thrift::protocol::TProtocol& protocol);
    void (*read)(void* message, apache::thrift::protocol::TProtocol& protocol);
};

/// Null for an unknown name. The name has no namespace.
const MessageType* findMessageType(std::string_view name);

/// All types, sorted by name.
std::span<const MessageType> messageTypes();

} // namespace cloudwire
