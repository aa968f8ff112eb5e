// The messages as bytes, worked out by hand, and what a reader takes and refuses.
#include "cloud/schema/lark_types.h"
#include "cloud/sdkmessages.h"
#include "host/cloudwire/codec.h"
#include "tests/support/rows.h"

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

constexpr std::size_t Limit = 1 << 20;

std::string times(std::size_t count, const std::string& bytes)
{
    std::string all;
    while (count-- > 0)
        all += bytes;
    return all;
}

/// A text of so many bytes, less than 2^21, behind its length.
std::string longText(std::size_t size)
{
    const auto digit = [&](int shift) {
        return static_cast<char>((size >> shift & 127) | (shift < 14 ? 128 : 0));
    };
    return std::string { digit(0), digit(7), digit(14) } + std::string(size, 'a');
}

/// What bytes are after reading and writing them, or what is wrong with them.
std::string recoded(const cloudwire::MessageType& type, const std::string& bytes)
{
    // In a block of its own size, so that the sanitizers see a read beyond it.
    const auto block = std::make_unique<char[]>(bytes.size());
    bytes.copy(block.get(), bytes.size());
    cloudwire::MessageCodec codec(Limit);
    const auto message = type.make();
    if (const auto fault = codec.decode(type, { block.get(), bytes.size() }, message.get()))
        return "error: " + *fault;
    return std::string(codec.encode(type, message.get()));
}

const std::string Nested = "\x9c" + times(62, "\x1c");
const std::string Huge = "\xff\xff\xff\xff\x07";
const std::string Empty = "\x15\0\x1b\0\0"s, State = "\x15\x0e\x1b\0\0"s; // of a SyncFolderResult

struct BytesRow {
    const char* name;
    const char* type;
    std::string bytes;
    std::string kept; ///< "=" all of them; "error: " and a part of the fault
};

// clang-format off: a row is a line or two.
const BytesRow Rows[] = {
    { "EveryPlainKind", "OrbitApiResult",
        "\x15\x02\x15\x01\x15\x80\x01\x15\xff\xff\xff\xff\x0f\x18\x02\xc3\xa9\x18\0\x18\0"
        "\x1b\x02\x88\x01"
        "a\0\x01"
        "b\x01"
        "2\x16\x80\x80\x80\x80\x80\x02\x16\x05\x18\0\x18\0\x18\x01u\0"s,
        "=" },
    { "ALongListAndTrue", "UploadFilesToCloudArg",
        "\x18\0\x18\0\x19\xf8\x0f"s
            + times(15,
                "\x01"
                "f")
            + "\x11\x18\0\x18\0\x1b\0\0"s,
        "=" },
    { "StructInAStruct", "CommonRequestArg", "\x1c\x18\x01k\x18\0\x15\0\x12\x1b\0\0\x1b\x01\x88\x01x\x01y\0"s,
        "=" },
    { "EmptyRecord", "GetDefaultWorkspaceResult", "\x15\0\x1c\0\x18\0\x18\0\x18\0\x18\0\x1b\0\0"s, "=" },
    { "NoFields", "SyncFolderResult", "\0"s, Empty },
    { "FieldsInAnyOrder", "SyncFolderResult", "\x2b\0\x05\x02\x0e\0"s, State },
    { "UnknownId", "SyncFolderResult", "\x15\x0e\x98\x03new\0"s, State },
    { "UnknownStruct", "SyncFolderResult", "\x15\x0e\x9c\x18\x01k\x11\0\0"s, State },
    { "UnknownDouble", "SyncFolderResult",
        "\x97"
        "12345678\x05\x02\x0e\0"s,
        State },
    { "AnotherType", "SyncFolderResult", "\x18\x02no\x1b\x01\x88\x01x\x01y\0"s,
        "\x15\0\x1b\x01\x88\x01x\x01y\0"s },
    { "AnotherNumber", "SyncFolderResult", "\x16\x0e\0"s, Empty },
    { "Nothing", "LarkIpcResult", "", "error: no bytes" },
    { "NoEnd", "LarkIpcResult",
        "\x48\x01"
        "a",
        "error: end within" },
    { "BytesAfterTheEnd", "LarkIpcResult", "\0\0"s, "error: 1 bytes after" },
    { "StructsAsDeepAsMayBe", "SyncFolderResult", Nested + std::string(64, '\0'), Empty },
    { "StructsOneDeeper", "LarkIpcResult", Nested + "\x1c" + std::string(65, '\0'), "error: depth limit" },
    { "ListsWithinLists", "LarkIpcResult", "\x99" + times(100000, "\x19"), "error: depth limit" },
    { "TextLongerThanTheBytes", "LarkIpcResult", "\x48" + Huge + "a", "error: limit" },
    { "TextOfNegativeLength", "LarkIpcResult", "\x48\xff\xff\xff\xff\x0f", "error: Negative" },
    { "ListThatAnnouncesMore", "LarkIpcResult", "\x39\xf8" + Huge + "\0"s, "error: limit" },
    { "ListOfWhatNeedsNoBytes", "LarkIpcResult", "\x39\xfc\xc0\x84\x3d\0"s, "error: limit" },
    { "MapThatAnnouncesMore", "LarkIpcResult", "\x2b" + Huge + "\x88\0"s, "error: limit" },
    { "UnknownListThatAnnouncesMore", "LarkIpcResult", "\x99\xfc" + Huge + "\0"s, "error: limit" },
    { "NumberWithoutAnEnd", "LarkIpcResult", "\x95" + times(20, "\x80"), "error: over 10 bytes" },
    { "TypeThatDoesNotExist", "LarkIpcResult", "\x9d\0"s, "error: does not exist" },
    { "MoreBytesThanMayBe", "LarkIpcResult", "\x48" + longText(Limit) + "\0"s, "error: more bytes than" },
    { "AsManyAsMayBe", "SyncFolderResult", "\x98" + longText(Limit - 5) + "\0"s, Empty },
};
// clang-format on

class Messages : public testing::Test { };

ROW_TEST(Messages, AreReadAndWritten, Rows)
{
    const BytesRow& row = GetParam();
    const std::string result = recoded(*cloudwire::findMessageType(row.type), row.bytes);
    if (row.kept.starts_with("error: "))
        EXPECT_TRUE(result.starts_with("error: ") && result.find(row.kept.substr(7)) != std::string::npos)
            << result;
    else
        EXPECT_EQ(result, row.kept == "=" ? row.bytes : row.kept);
}

TEST_F(Messages, CodecGoesOnAfterFaultsAndManyMessages)
{
    const cloudwire::MessageType& type = *cloudwire::findMessageType("SyncFolderResult");
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

/// The library's own reader and writer against those of the stand-in.
TEST_F(Messages, SdkMessagesAreReadAndWrittenAsTheSuiteDoes)
{
    const cloudwire::MessageType& replies = *cloudwire::findMessageType("OrbitApiResult");
    cloudwire::MessageCodec codec;
    int good = 0;
    const auto compare = [&](const std::string& bytes) {
        // Without a null character behind them, which the sanitizers would let a reader see.
        const auto block = std::make_unique<char[]>(bytes.size());
        bytes.copy(block.get(), bytes.size());
        const auto reply =
            jsapi::decodeSdkReply(QByteArray::fromRawData(block.get(), static_cast<int>(bytes.size())));
        orbitapi::OrbitApiResult message;
        EXPECT_EQ(reply.has_value(), !codec.decode(replies, bytes, &message))
            << testing::PrintToString(bytes);
        if (!reply)
            return;
        ++good;
        EXPECT_EQ(std::string(codec.encode(replies, &*reply)),
            std::string(cloudwire::MessageCodec().encode(replies, &message)));
    };
    for (const BytesRow& row : Rows) {
        compare(row.bytes);
        for (size_t at = 0; row.bytes.size() < 1000 && at < row.bytes.size(); ++at) {
            compare(row.bytes.substr(0, at));
            for (const int change : { 1, 2, 4, 8, 16, 32, 64, 128, 255 }) {
                std::string changed = row.bytes;
                changed[at] = static_cast<char>(changed[at] ^ change);
                compare(changed);
            }
        }
    }
    EXPECT_GT(good, 100);

    orbitapi::CommonRequestArg request;
    request.baseInfo.requestKey = "k";
    request.extraParam["x"] = "y";
    EXPECT_EQ(jsapi::encodeSdkRequest(request).toStdString(), Rows[2].bytes);
    request.extraParam["x"].resize(jsapi::MaxSdkMessageBytes);
    EXPECT_EQ(jsapi::encodeSdkRequest(request), QByteArray());
}

} // namespace
