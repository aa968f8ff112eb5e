#include "tests/exports/block.h"

#include <functional>
#include <thread>
#include <vector>

namespace {

static_assert(static_cast<std::uint32_t>(VEXLITE_STREAM_NOT_SUPPORTED) == 0x80000001
    && static_cast<std::uint32_t>(VEXLITE_STREAM_NO_MEMORY) == 0x80000002
    && static_cast<std::uint32_t>(VEXLITE_STREAM_BAD_ARGUMENT) == 0x80000003
    && static_cast<std::uint32_t>(VEXLITE_STREAM_NO_INTERFACE) == 0x80000004);

struct StreamDeleter {
    void operator()(VexliteStream* stream) const { stream->Release(); }
};
using OwnedStream = std::unique_ptr<VexliteStream, StreamDeleter>;

OwnedStream streamOn(void* handle, bool freesBlock)
{
    VexliteStream* stream = nullptr;
    EXPECT_EQ(_XCreateStreamOnHGBL(handle, freesBlock, &stream), VEXLITE_STREAM_OK);
    return OwnedStream(stream);
}

void* blockOf(const OwnedStream& stream)
{
    void* handle = nullptr;
    EXPECT_EQ(_XGetHGBLFromStream(stream.get(), &handle), VEXLITE_STREAM_OK);
    return handle;
}

std::string read(VexliteStream& stream, std::uint32_t count)
{
    std::string text(count, '?');
    std::uint32_t done = 77;
    EXPECT_EQ(stream.Read(text.data(), count, &done), VEXLITE_STREAM_OK);
    text.resize(done);
    return text;
}

void* makeBlock(const std::string& text)
{
    void* block = _XGblAlloc(0, static_cast<std::uint32_t>(text.size()));
    text.copy(static_cast<char*>(block), text.size());
    return block;
}

TEST(MemoryStream, ReadsAndWritesTheBlock)
{
    using Steps = std::function<std::int32_t(VexliteStream&)>;
    const auto seek = [](VexliteStream& stream, std::int64_t distance, std::uint32_t from) {
        std::uint64_t position = 0;
        const std::int32_t result = stream.Seek(distance, from, &position);
        return result == VEXLITE_STREAM_OK ? static_cast<std::int32_t>(position) : result;
    };
    const auto write = [](VexliteStream& stream, const std::string& text) {
        std::uint32_t done = 77;
        const auto count = static_cast<std::uint32_t>(text.size());
        const std::int32_t result = stream.Write(text.data(), count, &done);
        EXPECT_EQ(done, result == VEXLITE_STREAM_OK ? count : 0);
        return result;
    };
    const struct {
        const char* name;
        Steps steps;
        int result;
        std::string content;   ///< afterwards, of "content"
        std::string rest = {}; ///< read from the position on
    } rows[] = {
        { "begins at the beginning", [&](auto&) { return VEXLITE_STREAM_OK; }, VEXLITE_STREAM_OK, "content",
            "content" },
        { "overwrites", [&](auto& s) { return write(s, "CON"); }, VEXLITE_STREAM_OK, "CONtent", "tent" },
        { "appends", [&](auto& s) { return seek(s, 0, 2), write(s, "s"); }, VEXLITE_STREAM_OK, "contents" },
        { "leaves a gap of zeros", [&](auto& s) { return seek(s, 2, 2), write(s, "x"); }, VEXLITE_STREAM_OK,
            { "content\0\0x", 10 } },
        { "clears what a shrink left", [&](auto& s) { return s.SetSize(1), s.SetSize(4); }, VEXLITE_STREAM_OK,
            { "c\0\0\0", 4 }, { "c\0\0\0", 4 } },
        { "a gap alone is no content", [&](auto& s) { return seek(s, 1'000'000, 0); }, 1'000'000, "content" },
        { "from the position", [&](auto& s) { return seek(s, 5, 0), seek(s, -2, 1); }, 3, "content", "tent" },
        { "from the end", [&](auto& s) { return seek(s, -2, 2); }, 5, "content", "nt" },
        { "before the beginning", [&](auto& s) { return seek(s, 5, 0), seek(s, -6, 1); },
            VEXLITE_STREAM_BAD_ARGUMENT, "content", "nt" },
        { "beyond all numbers", [&](auto& s) { return seek(s, 5, 0), seek(s, INT64_MAX, 1); },
            VEXLITE_STREAM_BAD_ARGUMENT, "content", "nt" },
        { "from nowhere", [&](auto& s) { return seek(s, 0, 3); }, VEXLITE_STREAM_BAD_ARGUMENT, "content",
            "content" },
        { "too large", [&](auto& s) { return s.SetSize(0x80000000); }, VEXLITE_STREAM_NO_MEMORY, "content",
            "content" },
        { "too far", [&](auto& s) { return seek(s, 0x7fffffff, 0), write(s, "x"); }, VEXLITE_STREAM_NO_MEMORY,
            "content" },
        { "nowhere near", [&](auto& s) { return seek(s, INT64_MAX, 0), write(s, "x"); },
            VEXLITE_STREAM_NO_MEMORY, "content" },
        { "reads into nothing", [&](auto& s) { return s.Read(nullptr, 1, nullptr); },
            VEXLITE_STREAM_BAD_ARGUMENT, "content", "content" },
        { "writes of nothing", [&](auto& s) { return s.Write(nullptr, 1, nullptr); },
            VEXLITE_STREAM_BAD_ARGUMENT, "content", "content" },
        { "writes nothing beyond the end",
            [&](auto& s) { return seek(s, 9, 0), s.Write(nullptr, 0, nullptr); }, VEXLITE_STREAM_OK,
            "content" },
        { "locks", [&](auto& s) { return s.LockRegion(0, 1, 0); }, VEXLITE_STREAM_NOT_SUPPORTED, "content",
            "content" },
        { "commits", [&](auto& s) { return write(s, "C"), s.Commit(0), s.Revert(); }, VEXLITE_STREAM_OK,
            "Content", "ontent" },
    };
    for (const auto& row : rows) {
        const OwnedStream stream = streamOn(makeBlock("content"), true);
        EXPECT_EQ(row.steps(*stream), row.result) << row.name;
        EXPECT_EQ(contentOf(blockOf(stream)), row.content) << row.name;
        EXPECT_EQ(read(*stream, 100), row.rest) << row.name;
        VexliteStreamStat stat;
        EXPECT_EQ(stream->Stat(&stat, 0), VEXLITE_STREAM_OK);
        EXPECT_EQ(stat.size, row.content.size()) << row.name;
    }
}

TEST(MemoryStream, WritesFromItsOwnBlock)
{
    const OwnedStream stream = streamOn(makeBlock(std::string(1000, 'x') + "end"), true);
    stream->Seek(0, VEXLITE_SEEK_END, nullptr);
    EXPECT_EQ(stream->Write(blockOf(stream), 1003, nullptr), VEXLITE_STREAM_OK);
    EXPECT_EQ(contentOf(blockOf(stream)), std::string(1000, 'x') + "end" + std::string(1000, 'x') + "end");
}

TEST(MemoryStream, LeavesTheBlockToItsOwner)
{
    void* block = makeBlock("content");
    OwnedStream stream = streamOn(block, false);
    VexliteStream* clone = nullptr;
    ASSERT_EQ(stream->Clone(&clone), VEXLITE_STREAM_OK);
    stream->SetSize(100'000);
    block = blockOf(stream);
    stream.reset();
    EXPECT_EQ(read(*clone, 7), "content");
    clone->Release();
    EXPECT_EQ(_XGblSize(block), 100'000u);
    _XGblFree(block);
}

TEST(MemoryStream, CopiesToOthersAndToItsClone)
{
    const std::string text(100'000, 'x');
    const OwnedStream stream = streamOn(makeBlock(text + "end"), true);
    const OwnedStream other = streamOn(nullptr, true);
    std::uint64_t taken = 0, given = 0;
    EXPECT_EQ(stream->CopyTo(other.get(), UINT64_MAX, &taken, &given), VEXLITE_STREAM_OK);
    EXPECT_EQ(contentOf(blockOf(other)), text + "end");
    EXPECT_EQ(taken, text.size() + 3);
    EXPECT_EQ(given, text.size() + 3);
    VexliteStream* clone = nullptr;
    ASSERT_EQ(stream->Clone(&clone), VEXLITE_STREAM_OK); // at the end
    const OwnedStream owned(clone);
    stream->Seek(0, VEXLITE_SEEK_BEGIN, nullptr);
    EXPECT_EQ(stream->CopyTo(clone, 100'003, nullptr, nullptr), VEXLITE_STREAM_OK);
    EXPECT_EQ(contentOf(blockOf(stream)), text + "end" + text + "end");
    clone->Seek(0x7fffffff, VEXLITE_SEEK_BEGIN, nullptr);
    EXPECT_EQ(stream->CopyTo(clone, 10, &taken, &given), VEXLITE_STREAM_NO_MEMORY);
    EXPECT_EQ(given, 0u);
}

TEST(MemoryStream, IsKnownByItsInterfaces)
{
    const OwnedStream stream = streamOn(nullptr, true);
    const struct {
        VexliteIid iid;
        std::int32_t result;
    } rows[] = { { { 0, 0, 0, { 0xc0, 0, 0, 0, 0, 0, 0, 0x46 } }, VEXLITE_STREAM_OK },
        { { 0xc, 0, 0, { 0xc0, 0, 0, 0, 0, 0, 0, 0x46 } }, VEXLITE_STREAM_OK },
        { { 0xc733a30, 0x2a1c, 0x11ce, { 0xad, 0xe5, 0, 0xaa, 0, 0x44, 0x77, 0x3d } }, VEXLITE_STREAM_OK },
        { { 0xb, 0, 0, { 0xc0, 0, 0, 0, 0, 0, 0, 0x46 } }, VEXLITE_STREAM_NO_INTERFACE } };
    for (const auto& [iid, result] : rows) {
        void* found = blockOf(stream);
        EXPECT_EQ(stream->QueryInterface(&iid, &found), result);
        EXPECT_EQ(found, result == VEXLITE_STREAM_OK ? stream.get() : nullptr);
        if (result == VEXLITE_STREAM_OK) {
            EXPECT_EQ(stream->Release(), 1u);
        }
    }
    void* handle = stream.get();
    EXPECT_EQ(_XGetHGBLFromStream(nullptr, &handle), VEXLITE_STREAM_BAD_ARGUMENT);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(_XGetHGBLFromStream(stream.get(), nullptr), VEXLITE_STREAM_BAD_ARGUMENT);
    EXPECT_EQ(_XCreateStreamOnHGBL(nullptr, 1, nullptr), VEXLITE_STREAM_BAD_ARGUMENT);
}

TEST(MemoryStream, CountsReferencesOfManyThreads)
{
    const OwnedStream stream = streamOn(nullptr, true);
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20'000; ++i)
                stream->AddRef();
            for (int i = 0; i < 20'000; ++i)
                stream->Release();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(stream->AddRef(), 2u);
    EXPECT_EQ(stream->Release(), 1u);
}

} // namespace
