// The messages as bytes, worked out by hand, and what a reader takes and refuses.
#include "cloud/schema/lark_types.h"
#include "cloud/schema/orbitapi_types.h"
#include "host/cloudwire/codec.h"

#include <gtest/gtest.h>
#include <thrift/protocol/TCompactProtocol.h>
#include <thrift/protocol/TDebugProtocol.h>
#include <thrift/transport/TBufferTransports.h>

namespace {

using namespace std::string_literals;

/// Derived virtually, which no cast leads back from, and without a virtual operation of its own for output.
template <typename Message>
concept HasTheForm =
    std::derived_from<Message, apache::thrift::TBase> && !requires(apache::thrift::TBase * base)
{
    static_cast<Message*>(base);
}
&&!requires(const Message& message, std::ostream& out)
{
    message.printTo(out);
};
static_assert(HasTheForm<nova::lark::LarkIpcArg> && HasTheForm<orbitapi::OrbitApiResult>);

struct VectorCase {
    const char* name;
    const char* type;
    std::shared_ptr<void> message;
    std::string bytes;
};

template <typename Message>
VectorCase vector(const char* name, const char* type, const Message& message, std::string bytes)
{
    return { name, type, std::make_shared<Message>(message), std::move(bytes) };
}

const cloudwire::MessageType& typeNamed(const char* name)
{
    const cloudwire::MessageType* type = cloudwire::findMessageType(name);
    if (!type)
        throw std::invalid_argument(name);
    return *type;
}

/// What the bytes are after reading and writing them.
std::string recoded(const char* name, const std::string& bytes)
{
    const cloudwire::MessageType& type = typeNamed(name);
    cloudwire::MessageCodec codec;
    const auto message = type.make();
    if (const auto fault = codec.decode(type, bytes, message.get()))
        return "error: " + *fault;
    return std::string(codec.encode(type, message.get()));
}

class Vector : public testing::TestWithParam<VectorCase> { };

TEST_P(Vector, IsWrittenAndRead)
{
    const auto& [name, type, message, bytes] = GetParam();
    cloudwire::MessageCodec codec;
    EXPECT_EQ(codec.encode(typeNamed(type), message.get()), bytes);
    EXPECT_EQ(recoded(type, bytes), bytes);
}

VectorCase everyPlainKind()
{
    orbitapi::OrbitApiResult message;
    message.resultState = 1;
    message.kNetworkError = -1;
    message.qNetworkError = 64;
    message.httpStatusCode = INT32_MIN;
    message.result = "\xc3\xa9";
    message.headerMap = { { "b", "2" }, { "a", "" } };
    message.replyTimestamp = 1LL << 35;
    message.duration = -3;
    message.userId = "u";
    return vector("NumbersTextsAndAnOrderedMap", "OrbitApiResult", message,
        "\x15\x02"
        "\x15\x01"
        "\x15\x80\x01"
        "\x15\xff\xff\xff\xff\x0f"
        "\x18\x02\xc3\xa9"
        "\x18\0"
        "\x18\0"
        "\x1b\x02\x88\x01"
        "a\0"
        "\x01"
        "b\x01"
        "2"
        "\x16\x80\x80\x80\x80\x80\x02"
        "\x16\x05"
        "\x18\0"
        "\x18\0"
        "\x18\x01u\0"s);
}

VectorCase boolsAndALongList(bool flag)
{
    nova::lark::UploadFilesToCloudArg message;
    message.srcFiles.assign(15, "f");
    message.createWhenNoExists = flag;
    std::string list = "\xf8\x0f";
    for (int i = 0; i < 15; ++i)
        list += "\x01"
                "f";
    return vector(flag ? "TrueAndALongList" : "FalseAndALongList", "UploadFilesToCloudArg", message,
        "\x18\0\x18\0\x19"s + list + (flag ? "\x11" : "\x12") + "\x18\0\x18\0\x1b\0\0"s);
}

VectorCase nested()
{
    orbitapi::CommonRequestArg message;
    message.baseInfo.requestKey = "k";
    message.baseInfo.canRetry = true;
    message.extraParam = { { "x", "y" } };
    return vector("StructInAStruct", "CommonRequestArg", message,
        "\x1c"
        "\x18\x01k\x18\0\x15\0\x11\x1b\0\0"
        "\x1b\x01\x88\x01x\x01y\0"s);
}

INSTANTIATE_TEST_SUITE_P(Messages, Vector,
    testing::Values(everyPlainKind(), boolsAndALongList(true), boolsAndALongList(false), nested(),
        vector("EmptyEnvelope", "LarkIpcArg", nova::lark::LarkIpcArg(), "\x18\0\x18\0\x1b\0\0"s),
        vector("EmptyResult", "LarkIpcResult", nova::lark::LarkIpcResult(), "\x15\0\x1b\0\x19\x08\x18\0\0"s),
        vector("EmptyRecord", "GetDefaultWorkspaceResult", nova::lark::GetDefaultWorkspaceResult(),
            "\x15\0\x1c\0\x18\0\x18\0\x18\0\x18\0\x1b\0\0"s)),
    [](const auto& info) { return info.param.name; });

struct ReadCase {
    const char* name;
    std::string given, kept;
};

class Reading : public testing::TestWithParam<ReadCase> { };

TEST_P(Reading, KeepsWhatItKnows)
{
    EXPECT_EQ(recoded("SyncFolderResult", GetParam().given), GetParam().kept);
}

INSTANTIATE_TEST_SUITE_P(SyncFolderResult, Reading,
    testing::Values(ReadCase { "NothingGiven", "\0"s, "\x15\0\x1b\0\0"s },
        ReadCase { "AnyOrder", "\x2b\0\x05\x02\x0e\0"s, "\x15\x0e\x1b\0\0"s },
        ReadCase { "UnknownId", "\x15\x0e\x98\x03new\0"s, "\x15\x0e\x1b\0\0"s },
        ReadCase { "UnknownStruct", "\x15\x0e\x9c\x18\x01k\x11\0\0"s, "\x15\x0e\x1b\0\0"s },
        ReadCase { "UnknownDouble",
            "\x97"
            "12345678\x05\x02\x0e\0"s,
            "\x15\x0e\x1b\0\0"s },
        ReadCase { "AnotherType", "\x18\x02no\x1b\x01\x88\x01x\x01y\0"s, "\x15\0\x1b\x01\x88\x01x\x01y\0"s },
        ReadCase { "AnotherNumber", "\x16\x0e\0"s, "\x15\0\x1b\0\0"s }),

    [](const auto& info) { return info.param.name; });

TEST(Codec, GoesOnAfterFaultsAndManyMessages)
{
    const cloudwire::MessageType& type = typeNamed("SyncFolderResult");
    const std::string good = "\x15\x0e\x1b\x01\x88\x01k\x0a"
                             "0123456789\0"s;
    cloudwire::MessageCodec codec(100);
    for (const std::string& bad : { std::string(100, '\x1c'), "\x15"s, std::string(101, 'a'), good }) {
        for (int i = 0; i < 100; ++i)
            EXPECT_EQ(codec.decode(type, bad, type.make().get()).has_value(), bad != good) << i;
        nova::lark::SyncFolderResult message;
        ASSERT_EQ(codec.decode(type, good, &message), std::nullopt);
        EXPECT_EQ(message.state, 7);
        message.extraParam["k"].resize(92);
        EXPECT_EQ(codec.encode(type, &message), "") << "100 bytes are the limit";
        message.extraParam["k"].resize(91);
        EXPECT_EQ(codec.encode(type, &message).size(), 100u);
    }
}

TEST(Messages, RespectTheProtocolsDepth)
{
    using namespace apache::thrift;
    const std::string bytes = "\x1c\0\0"s;
    for (const int depth : { 1, 2 }) {
        const auto isRefused = [&](auto&& operation) {
            const auto buffer = std::make_shared<transport::TMemoryBuffer>(
                std::make_shared<TConfiguration>(1 << 20, 1 << 20, depth));
            buffer->write(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            protocol::TCompactProtocol protocol(buffer);
            try {
                operation(protocol);
            } catch (const protocol::TProtocolException& error) {
                return error.getType() == 6;
            }
            return false;
        };
        orbitapi::CommonRequestArg message;
        EXPECT_EQ(isRefused([&](auto& protocol) { message.write(&protocol); }), depth == 1);
        EXPECT_EQ(isRefused([&](auto& protocol) { message.read(&protocol); }), depth == 1);
    }
}

TEST(Messages, NameTheirStructuresAndFields)
{
    orbitapi::CommonRequestArg message;
    message.baseInfo.timeout = 9;
    EXPECT_EQ(apache::thrift::ThriftDebugString(message), R"(CommonRequestArg {
  01: baseInfo (struct) = RequestBaseInfo {
    01: requestKey (string) = "",
    02: bizSource (string) = "",
    03: timeout (i32) = 9,
    04: canRetry (bool) = false,
    05: extraParam (map) = map<string,string>[0] {
    },
  },
  02: extraParam (map) = map<string,string>[0] {
  },
})");
}

} // namespace
