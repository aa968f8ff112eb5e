#include "host/cloudwire/frames.h"

#include <QtEndian>
#include <thrift/protocol/TCompactProtocol.h>
#include <thrift/transport/TBufferTransports.h>

using apache::thrift::TException;
using apache::thrift::protocol::TCompactProtocolT;
using apache::thrift::protocol::TMessageType;
using apache::thrift::transport::TMemoryBuffer;

namespace cloudwire {

namespace {

using LengthField = quint32;
constexpr std::size_t MaxNameBytes = 128;
/// The fixed part, the number and the name with its length.
constexpr std::size_t MaxHeadBytes = 2 + 5 + 5 + MaxNameBytes;

constexpr std::string_view EnvelopeCall = "larkIpcCall";
constexpr std::string_view SdkCall = "orbitApiCall";

const MessageType* findType(std::string_view procedure, const char* suffix)
{
    std::string name(procedure == EnvelopeCall ? "larkIpc" : procedure);
    if (name.empty() || name.front() < 'a' || name.front() > 'z')
        return nullptr;
    name.front() = static_cast<char>(name.front() - 'a' + 'A');
    return findMessageType(name + suffix);
}

} // namespace

const MessageType* findArgumentType(std::string_view procedure)
{
    if (procedure == SdkCall)
        return findMessageType("CommonRequestArg");
    return findType(procedure, "Arg");
}

const MessageType* findResultType(std::string_view procedure)
{
    if (procedure == SdkCall)
        return findMessageType("OrbitApiResult");
    return findType(procedure, "Result");
}

FrameCodec::FrameCodec()
    : m_messages(MaxFrameBytes - MaxHeadBytes)
{
}

QByteArray FrameCodec::encode(const Head& head, const MessageType& type, const void* message)
{
    const std::string_view body = m_messages.encode(type, message);
    if (body.empty() || head.procedure.size() > MaxNameBytes)
        return {};
    const auto buffer = std::make_shared<TMemoryBuffer>(MaxHeadBytes);
    TCompactProtocolT<TMemoryBuffer>(buffer).writeMessageBegin(
        head.procedure, static_cast<TMessageType>(head.kind), head.number);
    std::uint8_t* begin = nullptr;
    std::uint32_t size = 0;
    buffer->getBuffer(&begin, &size);

    QByteArray frame;
    frame.reserve(static_cast<int>(sizeof(LengthField) + size + body.size()));
    frame.resize(sizeof(LengthField));
    qToBigEndian(static_cast<LengthField>(size + body.size()), frame.data());
    frame.append(reinterpret_cast<const char*>(begin), static_cast<int>(size));
    frame.append(body.data(), static_cast<int>(body.size()));
    return frame;
}

std::optional<Head> FrameCodec::takeHead(std::string_view& bytes)
{
    // Only the bytes that a head may have, which also limits the length of the name.
    std::string head(bytes.substr(0, MaxHeadBytes));
    const auto buffer = std::make_shared<TMemoryBuffer>(
        reinterpret_cast<std::uint8_t*>(head.data()), static_cast<std::uint32_t>(head.size()));
    Head read;
    TMessageType kind {};
    try {
        TCompactProtocolT<TMemoryBuffer>(buffer, MaxNameBytes, 0)
            .readMessageBegin(read.procedure, kind, read.number);
    } catch (const TException&) {
        return std::nullopt;
    }
    read.kind = static_cast<Kind>(kind);
    if (read.kind < Kind::Call || read.kind > Kind::Notice)
        return std::nullopt;
    bytes.remove_prefix(head.size() - buffer->available_read());
    return read;
}

void FrameReader::add(const QByteArray& bytes)
{
    m_bytes.remove(0, std::exchange(m_at, 0));
    m_bytes.append(bytes);
}

std::optional<std::string_view> FrameReader::next()
{
    const auto left = static_cast<std::size_t>(m_bytes.size() - m_at);
    if (m_broken || left < sizeof(LengthField))
        return std::nullopt;
    const char* begin = m_bytes.constData() + m_at;
    const std::size_t size = qFromBigEndian<LengthField>(begin);
    m_broken = size == 0 || size > MaxFrameBytes;
    if (m_broken || left - sizeof(LengthField) < size)
        return std::nullopt;
    m_at += static_cast<int>(sizeof(LengthField) + size);
    return std::string_view(begin + sizeof(LengthField), size);
}

} // namespace cloudwire
