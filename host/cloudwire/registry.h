// The cloud messages by the names of their types.
#pragma once

#include <memory>
#include <span>
#include <string_view>

namespace apache::thrift::protocol {
class TProtocol;
}

namespace cloudwire {

/// What can be done with a message of which only the type's name is known. [any thread]
struct MessageType {
    std::string_view name; ///< zero-terminated: "LarkIpcArg"
    /// A message with all its members at their defaults.
    std::shared_ptr<void> (*make)();
    // Through a protocol of Thrift, with its exceptions; MessageCodec (codec.h) has the compact one.
    // `message` is the address of a whole message of this type, such as `make` answers or a request that is
    // handed on.
    void (*write)(const void* message, apache::thrift::protocol::TProtocol& protocol);
    void (*read)(void* message, apache::thrift::protocol::TProtocol& protocol);
};

/// The type with this name, or null. The namespace is no part of the name.
const MessageType* findMessageType(std::string_view name);

/// All of them, by ascending names.
std::span<const MessageType> messageTypes();

} // namespace cloudwire
