// The codec's own promises; messages_test.py has the bytes.
#include "cloud/schema/codec.h"
#include "cloud/schema/lark_types.h"
#include "cloud/schema/orbitapi_types.h"

#include <gtest/gtest.h>

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

TEST(Codec, GoesOnAfterFaultsAndManyMessages)
{
    const cloud::MessageType& type = *cloud::findMessageType("SyncFolderResult");
    const std::string good = "\x15\x0e\x1b\x01\x88\x01k\x0a"
                             "0123456789\0"s;
    cloud::MessageCodec codec(100);
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

} // namespace
