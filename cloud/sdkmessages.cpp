#include "cloud/sdkmessages.h"

#include <thrift/protocol/TCompactProtocol.h>
#include <thrift/transport/TBufferTransports.h>

namespace jsapi {

namespace {

using apache::thrift::TConfiguration;
using apache::thrift::TException;
using apache::thrift::transport::TMemoryBuffer;

/// The transport counts a string's length twice.
constexpr int ConfiguredBytes = MaxSdkMessageBytes + 5;

class CompactProtocol final : public apache::thrift::protocol::TCompactProtocolT<TMemoryBuffer> {
public:
    using TCompactProtocolT::TCompactProtocolT;

    /// Refuses strings and containers that announce more than `bytes`: each element has at least one byte.
    void limitTo(int bytes)
    {
        string_limit_ = bytes;
        container_limit_ = bytes;
    }
};

} // namespace

QByteArray encodeSdkRequest(const orbitapi::CommonRequestArg& request)
{
    const auto buffer = std::make_shared<TMemoryBuffer>(std::make_shared<TConfiguration>(ConfiguredBytes));
    buffer->setMaxBufferSize(MaxSdkMessageBytes);
    try {
        CompactProtocol protocol(buffer);
        request.write(&protocol);
    } catch (const TException&) {
        return {};
    }
    std::uint8_t* bytes = nullptr;
    std::uint32_t size = 0;
    buffer->getBuffer(&bytes, &size);
    return { reinterpret_cast<const char*>(bytes), static_cast<int>(size) };
}

std::optional<orbitapi::OrbitApiResult> decodeSdkReply(const QByteArray& bytes)
{
    if (bytes.isEmpty() || bytes.size() > MaxSdkMessageBytes)
        return std::nullopt;
    orbitapi::OrbitApiResult reply;
    try {
        auto* begin = reinterpret_cast<std::uint8_t*>(const_cast<char*>(bytes.constData()));
        const auto buffer = std::make_shared<TMemoryBuffer>(begin, static_cast<std::uint32_t>(bytes.size()),
            TMemoryBuffer::OBSERVE, std::make_shared<TConfiguration>(ConfiguredBytes));
        CompactProtocol protocol(buffer);
        protocol.limitTo(bytes.size());
        reply.read(&protocol);
        if (buffer->available_read() > 0)
            return std::nullopt;
    } catch (const TException&) {
        return std::nullopt;
    }
    return reply;
}

} // namespace jsapi
