#include "host/cloudwire/codec.h"

#include <algorithm>
#include <stdexcept>
#include <thrift/protocol/TCompactProtocol.h>
#include <thrift/transport/TBufferTransports.h>

using apache::thrift::TConfiguration;
using apache::thrift::TException;
using apache::thrift::protocol::TCompactProtocolT;
using apache::thrift::protocol::TProtocolException;
using apache::thrift::transport::TMemoryBuffer;
using apache::thrift::transport::TTransportException;

namespace cloudwire {

namespace {

constexpr std::size_t LargestMaxBytes = 512 << 20;

/// The transport counts a string's length twice.
std::shared_ptr<TConfiguration> makeConfiguration(std::size_t maxBytes)
{
    return std::make_shared<TConfiguration>(static_cast<int>(maxBytes) + 5);
}

/// Reads from memory that it does not own.
class ForeignBytes final : public TMemoryBuffer {
public:
    explicit ForeignBytes(std::size_t maxBytes)
        : TMemoryBuffer(nullptr, 0, OBSERVE, makeConfiguration(maxBytes))
    {
    }

    /// Like resetBuffer(), without allocating.
    void observe(std::string_view bytes)
    {
        buffer_ = reinterpret_cast<std::uint8_t*>(const_cast<char*>(bytes.data()));
        bufferSize_ = static_cast<std::uint32_t>(bytes.size());
        setReadBuffer(buffer_, bufferSize_);
        setWriteBuffer(buffer_ + bufferSize_, 0);
    }
};

class Protocol final : public TCompactProtocolT<TMemoryBuffer> {
public:
    using TCompactProtocolT::TCompactProtocolT;

    /// Refuses strings and containers that announce more than `bytes`: each element has at least one byte.
    void limitTo(std::size_t bytes)
    {
        string_limit_ = static_cast<std::int32_t>(bytes);
        container_limit_ = static_cast<std::int32_t>(bytes);
    }
};

} // namespace

struct MessageCodec::Stream {
    explicit Stream(std::size_t maxBytes)
        : reading(std::make_shared<ForeignBytes>(maxBytes))
        , writing(std::make_shared<TMemoryBuffer>(makeConfiguration(maxBytes)))
        , reader(reading)
        , writer(writing)
    {
        writing->setMaxBufferSize(
            static_cast<std::uint32_t>(std::max<std::size_t>(maxBytes, TMemoryBuffer::defaultSize)));
    }

    std::shared_ptr<ForeignBytes> reading;
    std::shared_ptr<TMemoryBuffer> writing;
    Protocol reader;
    Protocol writer;
    /// True during a call and after an exception, which leaves the protocols within a message.
    bool unusable = false;
};

MessageCodec::MessageCodec(std::size_t maxBytes)
    : m_maxBytes(std::min(maxBytes, LargestMaxBytes))
    , m_stream(std::make_unique<Stream>(m_maxBytes))
{
}

MessageCodec::~MessageCodec() = default;

MessageCodec::Stream& MessageCodec::begin()
{
    if (m_stream->unusable)
        m_stream = std::make_unique<Stream>(m_maxBytes);
    m_stream->unusable = true;
    return *m_stream;
}

std::string_view MessageCodec::encode(const MessageType& type, const void* message)
{
    Stream& stream = begin();
    try {
        stream.writing->resetBuffer();
        type.write(message, stream.writer);
    } catch (const TException&) {
        // The buffer can not grow beyond the limit, or a string is longer than the protocol can count.
        return {};
    }
    stream.unusable = false;
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    stream.writing->getBuffer(&data, &size);
    return { reinterpret_cast<const char*>(data), size <= m_maxBytes ? size : 0 };
}

std::optional<std::string> MessageCodec::decode(
    const MessageType& type, std::string_view bytes, void* message)
{
    if (bytes.empty())
        return "no bytes";
    if (bytes.size() > m_maxBytes)
        return "more bytes than a message may have";
    Stream& stream = begin();
    try {
        stream.reading->observe(bytes);
        stream.reader.limitTo(bytes.size());
        type.read(message, stream.reader);
    } catch (const TProtocolException& error) {
        return error.what();
    } catch (const TTransportException&) {
        return "the bytes end within the message";
    } catch (const TException&) {
        return "a field of a type that does not exist";
    }
    const std::uint32_t left = stream.reading->available_read();
    // Resets the count of bytes, for which there is a limit a message.
    stream.reading->readEnd();
    stream.unusable = false;
    if (left > 0)
        return std::to_string(left) + " bytes after the end of the message";
    return {};
}

} // namespace cloudwire
