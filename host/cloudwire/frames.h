// What the suite and its cloud process say to each other on a local socket: frames.
//
// A frame is the number of its other bytes (4 bytes, big-endian), a head and one cloud message. The head is
// that of a message in Thrift's compact protocol, with the procedure's name, the kind and a number; so a
// frame is what Thrift's framed transport carries, but for the message, which has no structure of arguments
// around it.
#pragma once

#include "host/cloudwire/codec.h"

#include <QByteArray>
#include <cstdint>
#include <optional>
#include <string>

namespace cloudwire {

/// What a frame may have in bytes, without the first four.
inline constexpr std::size_t MostFrameBytes = 4 << 20;

enum class Kind : std::int32_t {
    Call = 1,    ///< the procedure's argument; a reply or a failure of the same number follows
    Reply = 2,   ///< the procedure's result
    Failure = 3, ///< the request has failed; the procedure's result as far as it is filled
    Notice = 4,  ///< an argument that is not answered
};

struct Head {
    Kind kind = Kind::Call;
    std::string procedure;
    std::int32_t number = 0; ///< the sender of the call chooses it
};

/// The types of a procedure's argument and result; null when it has none.
const MessageType* argumentType(std::string_view procedure);
const MessageType* resultType(std::string_view procedure);

/// Makes frames and reads them, one after the other. [one thread at a time]
class FrameCodec {
public:
    FrameCodec();

    /// A frame with its length; empty when it would have too many bytes.
    QByteArray encode(const Head& head, const MessageType& type, const void* message);

    /// Reads the head of a frame without its length, and leaves the message in `bytes`. Nothing when there is
    /// no head of one of the kinds.
    static std::optional<Head> takeHead(std::string_view& bytes);
    /// Reads the message behind the head, as MessageCodec does.
    [[nodiscard]] std::optional<std::string> decode(
        const MessageType& type, std::string_view bytes, void* message)
    {
        return m_messages.decode(type, bytes, message);
    }

private:
    MessageCodec m_messages;
};

/// Cuts what comes from a socket into frames. Takes memory for bytes that are there, not for those that are
/// announced.
class FrameReader {
public:
    void add(const QByteArray& bytes);
    /// The next frame without its length, valid until add(). Nothing while it is not whole, or when the bytes
    /// are broken.
    std::optional<std::string_view> next();
    /// A frame is empty or announces too many bytes: what follows can not be read.
    bool isBroken() const { return m_broken; }

private:
    QByteArray m_bytes;
    int m_at = 0; ///< where the next frame begins
    bool m_broken = false;
};

} // namespace cloudwire
