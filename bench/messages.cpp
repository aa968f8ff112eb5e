// Cloud messages encoded and decoded by their types' names, against the generated code with a protocol and a
// buffer of the caller's own.
#include "bench/allocations.h"
#include "cloud/schema/lark_types.h"
#include "host/cloudwire/codec.h"

#include <QtGlobal>
#include <benchmark/benchmark.h>
#include <thrift/protocol/TCompactProtocol.h>
#include <thrift/transport/TBufferTransports.h>

namespace bench {

namespace {

using apache::thrift::transport::TMemoryBuffer;
using nova::lark::GetCloudFileCachePathArg;
using nova::lark::LarkIpcResult;

void fill(GetCloudFileCachePathArg& message)
{
    message.userId = "1234567890";
    message.cloudPath = "/My cloud documents/Reports/2026/November/summary.docx";
    message.extraParam = { { "from", "page" } };
}

void fill(LarkIpcResult& message)
{
    for (int i = 0; i < 1000; ++i)
        message.resultMap["file-" + std::to_string(1000000 + i)] = "/My cloud documents/" + std::to_string(i);
}

class ByName {
public:
    template <typename Message> std::string_view encode(const Message& message, const char* name)
    {
        return m_codec.encode(*cloudwire::findMessageType(name), &message);
    }

    template <typename Message> auto decode(std::string_view bytes, const char* name)
    {
        const cloudwire::MessageType* type = cloudwire::findMessageType(name);
        auto message = type->make();
        if (m_codec.decode(*type, bytes, message.get()))
            qFatal("The bytes are no message.");
        return std::static_pointer_cast<Message>(message);
    }

private:
    cloudwire::MessageCodec m_codec;
};

class Generated {
public:
    template <typename Message> std::string_view encode(const Message& message, const char*)
    {
        m_writing->resetBuffer();
        message.write(&m_writer);
        std::uint8_t* data = nullptr;
        std::uint32_t size = 0;
        m_writing->getBuffer(&data, &size);
        return { reinterpret_cast<const char*>(data), size };
    }

    template <typename Message> auto decode(std::string_view bytes, const char*)
    {
        auto message = std::make_shared<Message>();
        m_reading->resetBuffer(reinterpret_cast<std::uint8_t*>(const_cast<char*>(bytes.data())),
            static_cast<std::uint32_t>(bytes.size()));
        message->read(&m_reader);
        m_reading->readEnd();
        return message;
    }

private:
    using Protocol = apache::thrift::protocol::TCompactProtocolT<TMemoryBuffer>;

    std::shared_ptr<TMemoryBuffer> m_writing = std::make_shared<TMemoryBuffer>();
    std::shared_ptr<TMemoryBuffer> m_reading = std::make_shared<TMemoryBuffer>();
    Protocol m_writer { m_writing };
    Protocol m_reader { m_reading };
};

template <typename Operation> void measure(benchmark::State& state, std::size_t bytes, Operation once)
{
    state.counters["allocations"] = allocationsOf(once);
    for (auto _ : state)
        once();
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

template <typename Message, typename Way> void encode(benchmark::State& state, const char* name)
{
    Way way;
    Message message;
    fill(message);
    const std::size_t size = Generated().encode(message, name).size();
    measure(state, size, [&] {
        if (way.encode(message, name).size() != size)
            qFatal("The message was not encoded.");
    });
}

template <typename Message, typename Way> void decode(benchmark::State& state, const char* name)
{
    Way way;
    Message message;
    fill(message);
    Generated encoder;
    const std::string_view bytes = encoder.encode(message, name);
    measure(
        state, bytes.size(), [&] { benchmark::DoNotOptimize(way.template decode<Message>(bytes, name)); });
}

template <typename Message> void add(const std::string& size, const char* type)
{
    const auto measured = [&](const char* operation, const char* way, auto run) {
        benchmark::RegisterBenchmark((operation + size + "/" + way).c_str(), run, type)->UseRealTime();
    };
    measured("encode_", "registry", encode<Message, ByName>);
    measured("encode_", "generated", encode<Message, Generated>);
    measured("decode_", "registry", decode<Message, ByName>);
    measured("decode_", "generated", decode<Message, Generated>);
}

const bool added = [] {
    add<GetCloudFileCachePathArg>("small", "GetCloudFileCachePathArg");
    add<LarkIpcResult>("large", "LarkIpcResult");
    return true;
}();

} // namespace

} // namespace bench
