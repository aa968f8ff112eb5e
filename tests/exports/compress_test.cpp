#include "host/kbase/globalfree.h"
#include "kbase/globalalloc.h"
#include "tests/exports/block.h"

#include <dlfcn.h>
#include <exception>
#include <functional>
#include <new>
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

TEST(Compression, ReservesTheBoundOfTheOutput)
{
    const struct {
        std::uint32_t length, reserved, capacity;
    } rows[] = { { 0, 16, 1016 }, { 999, 1015, 1016 }, { 1000, 1017, 2040 }, { 9000000, 9009016, 9009144 } };
    for (const auto& [length, reserved, capacity] : rows) {
        asked.clear();
        EXPECT_EQ(outputsOf(textOf(length).data(), length).capacity, capacity) << length;
        EXPECT_EQ(asked, std::vector<std::size_t> { reserved }) << length;
    }
}

TEST(Compression, OfNothingNeedsNoSource)
{
    const Outputs made = outputsOf(nullptr, 0);
    EXPECT_EQ(made.zlib, std::string("\x78\x9c\x03\0\0\0\0\x01", 8));
    EXPECT_EQ(made.raw, std::string("\0", 1));
}

TEST(Compression, LeavesANullBlockWhenItRefuses)
{
    const struct {
        const char* name;
        const void* source;
        std::uint32_t length;
        std::int32_t level, code;
    } rows[] = { { "level below", "x", 1, -2, StreamError }, { "level above", "x", 1, 10, StreamError },
        { "null source", nullptr, 0xffffffff, -1, StreamError },
        { "longest input is reserved", "x", LongestInput, 10, StreamError },
        { "too long", "x", LongestInput + 1, -1, NoMemory }, { "all bits", "x", 0xffffffff, -1, NoMemory } };
    for (const auto& [name, source, length, level, code] : rows) {
        int place = 0;
        void* data = &place;
        EXPECT_EQ(_XZlibCompress(source, length, &data, level), code) << name;
        EXPECT_EQ(data, nullptr) << name;
    }
}

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

TEST(Deflate, LeavesNothingToFreeWhenItRefuses)
{
    const auto refuses = []() -> void* { return nullptr; };
    const struct {
        const char* name;
        const void* source;
        std::uint32_t length;
        std::function<void*()> host;
        std::vector<std::size_t> asked;
        std::int32_t code;
    } rows[] = { { "null source", nullptr, 0xffffffff, {}, {}, StreamError },
        { "too long", "x", 4290676604, {}, {}, NoMemory }, { "all bits", "x", 0xffffffff, {}, {}, NoMemory },
        { "longest input", "x", 4290676603, refuses, { 0xffffffff }, NoMemory },
        { "host refuses", "x", 1, refuses, { 17 }, NoMemory },
        { "bad_alloc", "x", 1, []() -> void* { throw std::bad_alloc(); }, { 17 }, NoMemory },
        { "other exception", "x", 1, []() -> void* { throw std::exception(); }, { 17 }, Unexpected },
        { "an int is thrown", "x", 1, []() -> void* { throw 1; }, { 17 }, Unexpected } };
    for (const auto& [name, source, length, host, expected, code] : rows) {
        asked.clear();
        hostAnswer = host;
        int place = 0;
        void* handle = &place;
        std::uint32_t size = 7;
        EXPECT_EQ(_XDeflate(source, length, &handle, &size), code) << name;
        hostAnswer = {};
        EXPECT_EQ(asked, expected) << name;
        EXPECT_EQ(handle, nullptr) << name;
        EXPECT_EQ(size, 0u) << name;
    }
}

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
