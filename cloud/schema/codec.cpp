#include "cloud/schema/codec.h"

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

namespace cloud {

namespace {

constexpr std::size_t LargestMaxBytes = 512 << 20;

/// After a text has been read, the protocol wants as many bytes again to be within the transport's limit.
std::shared_ptr<TConfiguration> configurationFor(std::size_t maxBytes)
{
    return std::make_shared<TConfiguration>(static_cast<int>(2 * maxBytes + 16));
}

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

/// Of no use any more after an exception: the protocol does not forget where it was.
class MessageCodec::Stream {
public:
    explicit Stream(std::size_t maxBytes)
        : m_reading(
            std::make_shared<TMemoryBuffer>(nullptr, 0, TMemoryBuffer::OBSERVE, configurationFor(maxBytes)))
        , m_writing(std::make_shared<TMemoryBuffer>(configurationFor(maxBytes)))
        , m_reader(m_reading)
        , m_writer(m_writing)
    {
        m_writing->setMaxBufferSize(
            static_cast<std::uint32_t>(std::max<std::size_t>(maxBytes, TMemoryBuffer::defaultSize)));
    }

    std::string_view write(const MessageType& type, const void* message)
    {
        m_writing->resetBuffer();
        type.write(message, m_writer);
        std::uint8_t* data = nullptr;
        std::uint32_t size = 0;
        m_writing->getBuffer(&data, &size);
        return { reinterpret_cast<const char*>(data), size };
    }

    /// Answers how many bytes are left over.
    std::uint32_t read(const MessageType& type, std::string_view bytes, void* message)
    {
        auto* data = reinterpret_cast<std::uint8_t*>(const_cast<char*>(bytes.data()));
        m_reading->resetBuffer(data, static_cast<std::uint32_t>(bytes.size()));
        m_reader.limitTo(bytes.size());
        type.read(message, m_reader);
        const std::uint32_t left = m_reading->available_read();
        // Without this the buffer counts the bytes of all messages against the limit for one.
        m_reading->readEnd();
        return left;
    }

private:
    std::shared_ptr<TMemoryBuffer> m_reading;
    std::shared_ptr<TMemoryBuffer> m_writing;
    Protocol m_reader;
    Protocol m_writer;
};

MessageCodec::MessageCodec(std::size_t maxBytes)
    : m_maxBytes(std::min(maxBytes, LargestMaxBytes))
{
}

MessageCodec::~MessageCodec() = default;

std::unique_ptr<MessageCodec::Stream> MessageCodec::takeStream()
{
    return m_stream ? std::move(m_stream) : std::make_unique<Stream>(m_maxBytes);
}

std::string_view MessageCodec::encode(const MessageType& type, const void* message)
{
    std::unique_ptr<Stream> stream = takeStream();
    try {
        const std::string_view bytes = stream->write(type, message);
        m_stream = std::move(stream);
        return bytes.size() <= m_maxBytes ? bytes : std::string_view();
    } catch (const TException&) {
        // The buffer can not grow beyond the limit, or a text is longer than the protocol can count.
        return {};
    }
}

std::optional<std::string> MessageCodec::decode(
    const MessageType& type, std::string_view bytes, void* message)
{
    if (bytes.empty())
        return "no bytes";
    if (bytes.size() > m_maxBytes)
        return "more bytes than a message may have";
    std::unique_ptr<Stream> stream = takeStream();
    try {
        const std::uint32_t left = stream->read(type, bytes, message);
        m_stream = std::move(stream);
        if (left == 0)
            return {};
        return std::to_string(left) + " bytes after the end of the message";
    } catch (const TProtocolException& error) {
        return error.what();
    } catch (const TTransportException&) {
        return "the bytes end within the message";
    } catch (const TException&) {
        return "a field of a type that does not exist";
    }
}

} // namespace cloud
