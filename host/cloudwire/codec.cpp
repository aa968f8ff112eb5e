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

/// A text's length counts twice against the transport's limit.
std::shared_ptr<TConfiguration> configurationFor(std::size_t maxBytes)
{
    return std::make_shared<TConfiguration>(static_cast<int>(maxBytes) + 5);
}

/// Memory of somebody else's to read from.
class ForeignBytes final : public TMemoryBuffer {
public:
    explicit ForeignBytes(std::size_t maxBytes)
        : TMemoryBuffer(nullptr, 0, OBSERVE, configurationFor(maxBytes))
    {
    }

    /// What resetBuffer does, without making a buffer for it.
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

    /// Refuses texts and containers that announce more than `bytes`: each element has one byte at least.
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
        , writing(std::make_shared<TMemoryBuffer>(configurationFor(maxBytes)))
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
    /// While it is used, and after an exception: the protocols do not forget where they were.
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
        // The buffer can not grow beyond the limit, or a text is longer than the protocol can count.
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
    // Without this the buffer counts the bytes of all messages against the limit for one.
    stream.reading->readEnd();
    stream.unusable = false;
    if (left > 0)
        return std::to_string(left) + " bytes after the end of the message";
    return {};
}

} // namespace cloudwire
