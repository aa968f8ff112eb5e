// The frames that the suite and its cloud process exchange on a local socket.
//
// A frame is its length without this field (4 bytes, big-endian), a head and one cloud message. The head is a
// message header of Thrift's compact protocol, with the procedure's name, the kind and a number. Unlike in
// Thrift's framed transport no structure of arguments is around the message.
#pragma once

#include "host/cloudwire/codec.h"

#include <QByteArray>
#include <cstdint>
#include <optional>
#include <string>

namespace cloudwire {

/// The limit of a frame, without its length field.
inline constexpr std::size_t MaxFrameBytes = 4 << 20;

enum class Kind : std::int32_t {
    Call = 1,    ///< carries the procedure's argument; a reply or failure with its number follows
    Reply = 2,   ///< carries the procedure's result
    Failure = 3, ///< carries the result of a failed call, with its state
    Notice = 4,  ///< carries an argument; there is no reply
};

struct Head {
    Kind kind = Kind::Call;
    std::string procedure;
    std::int32_t number = 0; ///< chosen by the sender of the call
};

/// The types of a procedure's argument and result; null for an unknown procedure.
const MessageType* findArgumentType(std::string_view procedure);
const MessageType* findResultType(std::string_view procedure);

/// Encodes and decodes frames. [one thread at a time]
class FrameCodec {
public:
    FrameCodec();

    /// A frame with its length field; empty when it would be too long.
    QByteArray encode(const Head& head, const MessageType& type, const void* message);

    /// Decodes the head of a frame without its length field, and removes it from `bytes`. Nothing when the
    /// head is wrong.
    static std::optional<Head> takeHead(std::string_view& bytes);
    /// Decodes the message behind the head, as MessageCodec does.
    [[nodiscard]] std::optional<std::string> decode(
        const MessageType& type, std::string_view bytes, void* message)
    {
        return m_messages.decode(type, bytes, message);
    }

private:
    MessageCodec m_messages;
};

/// Cuts the bytes from a socket into frames. Allocates for bytes that have come, not for announced ones.
class FrameReader {
public:
    void add(const QByteArray& bytes);
    /// The next frame without its length field, valid until add(). Nothing while it is incomplete, or after
    /// isBroken().
    std::optional<std::string_view> next();
    /// True after a frame of no length or one that is too long; no further frame can be found.
    bool isBroken() const { return m_broken; }

private:
    QByteArray m_bytes;
    int m_at = 0; ///< where the next frame begins
    bool m_broken = false;
};

} // namespace cloudwire
