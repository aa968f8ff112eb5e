// Encodes and decodes cloud messages: Thrift's compact protocol, without a header or a length.
#pragma once

#include "host/cloudwire/registry.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cloudwire {

/// Reuses its buffers from message to message. The bytes to decode need not be trusted. [one thread at a
/// time]
class MessageCodec {
public:
    /// The default limit of a message.
    static constexpr std::size_t UsualMaxBytes = 16 << 20;

    /// Messages of more than `maxBytes` (at most 512 MiB) are refused in both directions.
    explicit MessageCodec(std::size_t maxBytes = UsualMaxBytes);
    ~MessageCodec();
    MessageCodec(const MessageCodec&) = delete;
    MessageCodec& operator=(const MessageCodec&) = delete;

    /// The bytes of a message, valid until the next call. Empty when they are more than the limit; every
    /// message has at least one byte.
    std::string_view encode(const MessageType& type, const void* message);

    /// Fills `message`, which must be new, from the bytes of exactly one message. Returns the error, after
    /// which the content of `message` is undefined. Fields that are unknown or of another type are skipped.
    /// Allocates for bytes that are there, about 40 times their number at worst (a list of empty strings),
    /// never for announced lengths alone.
    [[nodiscard]] std::optional<std::string> decode(
        const MessageType& type, std::string_view bytes, void* message);

private:
    struct Stream;

    Stream& begin();

    std::size_t m_maxBytes;
    std::unique_ptr<Stream> m_stream;
};

} // namespace cloudwire
