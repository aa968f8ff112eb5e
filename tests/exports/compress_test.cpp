#include "kbase/globalalloc.h"
#include "tests/exports/block.h"

#include <dlfcn.h>
#include <functional>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

/// The longest input whose output can be reserved: 2145338293 + 2145338 + 16 = 2^31 - 1.
constexpr std::uint32_t LongestInput = 2145338293;

constexpr std::int32_t StreamError = -2;
constexpr auto NoMemory = static_cast<std::int32_t>(0x80000002);
constexpr auto Unexpected = static_cast<std::int32_t>(0x8000ffff);

thread_local std::vector<std::size_t> asked;
thread_local std::function<void*()> hostAnswer;

} // namespace

// The library's allocator is looked up here first. It passes on to the suite's unless a test answers instead.
void* mfxGlobalAlloc(std::size_t bytes)
{
    static const auto suites =
        reinterpret_cast<decltype(&mfxGlobalAlloc)>(dlsym(RTLD_NEXT, "mfxGlobalAlloc"));
    asked.push_back(bytes);
    return hostAnswer ? hostAnswer() : suites(bytes);
}

namespace {

std::string textOf(std::size_t length)
{
    std::string text;
    for (unsigned number = 1; text.size() < length; number = number * 1103515245 + 12345)
        text += "word" + std::to_string(number >> 22) + ' ';
    text.resize(length);
    return text;
}

/// What both compressors make of an input.
struct Outputs {
    std::string zlib;
    std::string raw;
    std::uint32_t capacity = 0;

    bool operator==(const Outputs&) const = default;
};

Outputs outputsOf(const void* source, std::uint32_t length)
{
    Outputs made;
    void* data = nullptr;
    EXPECT_EQ(_XZlibCompress(source, length, &data, -1), 0);
    if (data) {
        made.zlib = contentOf(data);
        made.capacity = capacityOf(data);
    }
    _XGblFree(data);
    std::uint32_t size = 0;
    EXPECT_EQ(_XDeflate(source, length, &data, &size), 0);
    made.raw.assign(static_cast<char*>(data), size);
    mfxGlobalFree(data);
    return made;
}

struct ReserveCase {
    const char* name;
    std::uint32_t length;
    std::uint32_t reserved, capacity;
};

class Reserve : public testing::TestWithParam<ReserveCase> { };

TEST_P(Reserve, IsTheBoundOfTheOutput)
{
    asked.clear();
    const std::string input = textOf(GetParam().length);
    EXPECT_EQ(outputsOf(input.data(), GetParam().length).capacity, GetParam().capacity);
    EXPECT_EQ(asked, std::vector<std::size_t> { GetParam().reserved });
}

INSTANTIATE_TEST_SUITE_P(Lengths, Reserve,
    testing::Values(ReserveCase { "Empty", 0, 16, 1016 }, ReserveCase { "Below1000", 999, 1015, 1016 },
        ReserveCase { "From1000", 1000, 1017, 2040 }, ReserveCase { "Large", 9000000, 9009016, 9009144 }),
    caseName<ReserveCase>);

TEST(Compression, OfNothingNeedsNoSource)
{
    const Outputs made = outputsOf(nullptr, 0);
    EXPECT_EQ(made.zlib, std::string("\x78\x9c\x03\0\0\0\0\x01", 8));
    EXPECT_EQ(made.raw, std::string("\0", 1));
}

struct RefusalCase {
    const char* name;
    const void* source;
    std::uint32_t length;
    std::int32_t level;
    std::int32_t code;
};

class CompressionRefusal : public testing::TestWithParam<RefusalCase> { };

TEST_P(CompressionRefusal, LeavesANullBlock)
{
    int place = 0;
    void* data = &place;
    EXPECT_EQ(_XZlibCompress(GetParam().source, GetParam().length, &data, GetParam().level), GetParam().code);
    EXPECT_EQ(data, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Arguments, CompressionRefusal,
    testing::Values(RefusalCase { "LevelBelow", "x", 1, -2, StreamError },
        RefusalCase { "LevelAbove", "x", 1, 10, StreamError },
        RefusalCase { "NullSource", nullptr, 0xffffffff, -1, StreamError },
        RefusalCase { "LongestInputIsReserved", "x", LongestInput, 10, StreamError },
        RefusalCase { "TooLong", "x", LongestInput + 1, -1, NoMemory },
        RefusalCase { "All32Bits", "x", 0xffffffff, -1, NoMemory }),
    caseName<RefusalCase>);

TEST(Compression, NeedsItsOutPointers)
{
    int place = 0;
    void* handle = &place;
    std::uint32_t size = 7;
    EXPECT_EQ(_XZlibCompress("x", 1, nullptr, -1), StreamError);
    EXPECT_EQ(_XDeflate("x", 1, nullptr, nullptr), StreamError);
    EXPECT_EQ(_XDeflate("x", 1, nullptr, &size), StreamError);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(_XDeflate("x", 1, &handle, nullptr), StreamError);
    EXPECT_EQ(handle, nullptr);
}

struct DeflateRefusalCase {
    const char* name;
    const void* source;
    std::uint32_t length;
    std::function<void*()> host;
    std::vector<std::size_t> asked;
    std::int32_t code;
};

class DeflateRefusal : public testing::TestWithParam<DeflateRefusalCase> { };

TEST_P(DeflateRefusal, LeavesNothingToFree)
{
    asked.clear();
    hostAnswer = GetParam().host;
    int place = 0;
    void* handle = &place;
    std::uint32_t size = 7;
    EXPECT_EQ(_XDeflate(GetParam().source, GetParam().length, &handle, &size), GetParam().code);
    hostAnswer = {};
    EXPECT_EQ(asked, GetParam().asked);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(size, 0u);
}

void* refuses()
{
    return nullptr;
}

INSTANTIATE_TEST_SUITE_P(Arguments, DeflateRefusal,
    testing::Values(DeflateRefusalCase { "NullSource", nullptr, 0xffffffff, {}, {}, StreamError },
        DeflateRefusalCase { "TooLong", "x", 4290676604, {}, {}, NoMemory },
        DeflateRefusalCase { "All32Bits", "x", 0xffffffff, {}, {}, NoMemory },
        DeflateRefusalCase { "LongestInput", "x", 4290676603, refuses, { 0xffffffff }, NoMemory },
        DeflateRefusalCase { "HostRefuses", "x", 1, refuses, { 17 }, NoMemory },
        DeflateRefusalCase {
            "HostThrowsBadAlloc", "x", 1, []() -> void* { throw std::bad_alloc(); }, { 17 }, NoMemory },
        DeflateRefusalCase { "HostThrowsOther", "x", 1, []() -> void* { throw std::runtime_error("host"); },
            { 17 }, Unexpected },
        DeflateRefusalCase { "HostThrowsAnInt", "x", 1, []() -> void* { throw 1; }, { 17 }, Unexpected }),
    caseName<DeflateRefusalCase>);

TEST(Threads, WorkOnBlocksOfTheirOwn)
{
    constexpr std::uint32_t piece = 700, pieces = 60;
    const std::string text = textOf(piece * pieces);
    std::vector<Outputs> expected;
    for (std::uint32_t length = piece; length <= text.size(); length += piece)
        expected.push_back(outputsOf(text.data(), length));
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            OwnedBlock input(_XGblAlloc(64, 0));
            for (std::uint32_t i = 0; i < pieces; ++i) {
                input.reset(_XGblReAlloc(input.release(), (i + 1) * piece, 64));
                ASSERT_TRUE(input);
                text.copy(static_cast<char*>(input.get()) + i * piece, piece, i * piece);
                EXPECT_EQ(outputsOf(input.get(), (i + 1) * piece), expected[i]);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
