#include "tests/exports/block.h"

#include <algorithm>
#include <vector>

namespace {

TEST(Blocks, TakeWholeUnitsOrAreRefused)
{
    constexpr std::uint32_t Refused = 0;
    const struct {
        std::uint32_t size, capacity;
    } rows[] = { { 0, 1016 }, { 1, 1016 }, { 1016, 1016 }, { 1017, 2040 }, { 0x7fffffff, 0x800003f8 },
        { 0x80000000, Refused }, { 0xfffffbf9, Refused }, { 0xffffffff, Refused } };
    for (const auto& [size, capacity] : rows) {
        for (const std::uint32_t flags : { 0u, 64u, 0xffffffffu }) {
            for (const bool isNew : { true, false }) {
                const OwnedBlock block(isNew ? _XGblAlloc(flags, size) : _XGblReAlloc(nullptr, size, flags));
                void* handle = block.get();
                ASSERT_EQ(handle != nullptr, capacity != Refused) << size;
                if (!handle)
                    continue;
                EXPECT_EQ(fieldBefore(handle, 8), size);
                EXPECT_EQ(capacityOf(handle), capacity) << size;
                EXPECT_EQ(_XGblSize(handle), size);
                EXPECT_EQ(_XGblFlags(handle), 0u);
                EXPECT_EQ(_XGblLock(handle), handle);
                EXPECT_EQ(_XGblUnlock(handle), 1);
            }
        }
    }
}

TEST(Blocks, ZeroFlagClearsTheWholeCapacityOfReusedMemory)
{
    constexpr std::uint32_t size = 20000, capacity = 20472;
    std::vector<OwnedBlock> blocks;
    for (int i = 0; i < 4; ++i)
        std::memset(blocks.emplace_back(_XGblAlloc(0, size)).get(), 0xaa, capacity);
    blocks.clear();
    for (int i = 0; i < 4; ++i) {
        void* block = blocks.emplace_back(_XGblAlloc(64, size)).get();
        ASSERT_EQ(capacityOf(block), capacity);
        EXPECT_EQ(std::string(static_cast<char*>(block), capacity), std::string(capacity, '\0'));
    }
}

TEST(Blocks, NullIsNoBlock)
{
    EXPECT_EQ(_XGblSize(nullptr), 0u);
    EXPECT_EQ(_XGblFlags(nullptr), 0u);
    EXPECT_EQ(_XGblLock(nullptr), nullptr);
    EXPECT_EQ(_XGblUnlock(nullptr), 1);
    EXPECT_EQ(_XGblFree(nullptr), nullptr);
    EXPECT_EQ(_XGblFree(_XGblAlloc(0, 1)), nullptr);
}

TEST(Blocks, KeepTheirContentAndFollowTheGrowthRule)
{
    const struct {
        const char* name;
        std::vector<std::uint32_t> sizes; ///< the first is allocated
        std::uint32_t capacity;
    } rows[] = { { "up to the capacity", { 1000, 1016 }, 1016 }, { "byte beyond", { 10, 1017 }, 2040 },
        { "far beyond", { 10, 2000 }, 2040 }, { "doubles", { 2040, 2041 }, 4088 },
        { "more than twice", { 2040, 9000 }, 9208 }, { "doubles the size", { 3000, 10, 3065 }, 4088 },
        { "shrinks", { 3000, 10 }, 3064 }, { "to nothing", { 3000, 0 }, 3064 } };
    for (const auto& [name, sizes, capacity] : rows) {
        void* block = _XGblAlloc(0, sizes.front());
        std::uint32_t kept = sizes.front();
        std::memset(block, 0xaa, kept);
        for (auto size = sizes.begin() + 1; size != sizes.end(); ++size) {
            block = _XGblReAlloc(block, *size, 0);
            ASSERT_TRUE(block) << name;
            EXPECT_EQ(_XGblSize(block), *size) << name;
            kept = std::min(kept, *size);
            EXPECT_EQ(contentOf(block).substr(0, kept), std::string(kept, '\xaa')) << name;
        }
        EXPECT_EQ(capacityOf(block), capacity) << name;
        _XGblFree(block);
    }
}

TEST(Blocks, DoubleUpToFourGigabytes)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer copies what the heap would only map elsewhere";
#endif
    void* block = _XGblAlloc(0, 0x7ffffff8);
    ASSERT_TRUE(block);
    EXPECT_EQ(capacityOf(block), 0x7ffffff8u);
    void* grown = _XGblReAlloc(block, 0x7fffffff, 0);
    if (!grown) {
        _XGblFree(block);
        GTEST_SKIP() << "there are no 4 GiB of memory";
    }
    EXPECT_EQ(capacityOf(grown), 0xfffffff8u);
    _XGblFree(grown);
}

TEST(Blocks, ClearExactlyTheBytesThatComeIntoUse)
{
    const struct {
        const char* name;
        std::uint32_t allocated, before, after, flags;
    } rows[] = { { "within the capacity", 100, 100, 300, 64 }, { "what a shrink left", 1000, 10, 500, 64 },
        { "beyond the capacity", 1000, 900, 5000, 64 }, { "among other flags", 100, 100, 300, 0xffffffff },
        { "not when shrinking", 1000, 1000, 10, 64 }, { "not without the flag", 1000, 10, 500, 0 },
        { "not with other flags", 1000, 10, 500, ~64u } };
    for (const auto& [name, allocated, before, after, flags] : rows) {
        void* block = _XGblAlloc(0, allocated);
        const std::uint32_t dirty = capacityOf(block);
        std::memset(block, 0xaa, dirty);
        block = _XGblReAlloc(_XGblReAlloc(block, before, 0), after, flags);
        ASSERT_TRUE(block) << name;
        std::string expected(std::max(dirty, after), '\xaa');
        if (flags & 64 && after > before)
            expected.replace(before, after - before, after - before, '\0');
        EXPECT_EQ(std::string(static_cast<char*>(block), expected.size()), expected) << name;
        _XGblFree(block);
    }
}

TEST(Blocks, StayAsTheyWereWhenASizeIsRefused)
{
    for (const std::uint32_t refused : { 0x80000000, 0xfffffbf9, 0xffffffff }) {
        const OwnedBlock block(_XGblAlloc(0, 100));
        ASSERT_TRUE(block);
        std::memcpy(block.get(), "content", 8);
        EXPECT_EQ(_XGblReAlloc(block.get(), refused, 64), nullptr) << refused;
        EXPECT_EQ(_XGblSize(block.get()), 100u);
        EXPECT_EQ(capacityOf(block.get()), 1016u);
        EXPECT_STREQ(static_cast<char*>(block.get()), "content");
    }
}

} // namespace
