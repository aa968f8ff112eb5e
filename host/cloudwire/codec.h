// Cloud messages to bytes and back: Thrift's compact protocol, without a header or a length around it.
#pragma once

#include "host/cloudwire/registry.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cloudwire {

/// Encodes and decodes messages one after the other, in buffers that it keeps. Bytes to decode may come from
/// anybody. [one thread at a time]
class MessageCodec {
public:
    /// What a message may have in bytes unless told otherwise.
    static constexpr std::size_t UsualMaxBytes = 16 << 20;

    /// Messages of more than `maxBytes` (at most 512 MiB) are refused in both directions.
    explicit MessageCodec(std::size_t maxBytes = UsualMaxBytes);
    ~MessageCodec();
    MessageCodec(const MessageCodec&) = delete;
    MessageCodec& operator=(const MessageCodec&) = delete;

    /// The bytes of a message, valid until the next call. Nothing when it has more than the limit: a message
    /// has a byte at least.
    std::string_view encode(const MessageType& type, const void* message);

    /// Fills `message`, a new one, from bytes that are exactly one message, and answers nothing; or what is
    /// wrong with them, and then the content of `message` is of no use. Fields that the type does not have,
    /// or has with another type, are skipped. Takes memory for what is there, some 40 times the bytes in the
    /// worst case (a list of empty texts), and never for what is only announced.
    [[nodiscard]] std::optional<std::string> decode(
        const MessageType& type, std::string_view bytes, void* message);

private:
    struct Stream;

    Stream& begin();

    std::size_t m_maxBytes;
    std::unique_ptr<Stream> m_stream;
};

} // namespace cloudwire
