#include "tests/exports/block.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::uint32_t Refused = 0;

struct AllocationCase {
    const char* name;
    std::uint32_t size;
    std::uint32_t capacity;
};

class Allocation : public testing::TestWithParam<AllocationCase> {
protected:
    void expectBlock(void* handle) const
    {
        const OwnedBlock block(handle);
        ASSERT_EQ(handle != nullptr, GetParam().capacity != Refused);
        if (!handle)
            return;
        EXPECT_EQ(fieldBefore(handle, 8), GetParam().size);
        EXPECT_EQ(fieldBefore(handle, 4), GetParam().capacity);
        EXPECT_EQ(_XGblSize(handle), GetParam().size);
        EXPECT_EQ(_XGblFlags(handle), 0u);
        EXPECT_EQ(_XGblLock(handle), handle);
        EXPECT_EQ(_XGblUnlock(handle), 1);
    }
};

TEST_P(Allocation, TakesWholeUnitsOrIsRefused)
{
    for (const std::uint32_t flags : { 0u, 64u, 0xffffffffu }) {
        expectBlock(_XGblAlloc(flags, GetParam().size));
        expectBlock(_XGblReAlloc(nullptr, GetParam().size, flags));
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, Allocation,
    testing::Values(AllocationCase { "Empty", 0, 1016 }, AllocationCase { "OneByte", 1, 1016 },
        AllocationCase { "FullUnit", 1016, 1016 }, AllocationCase { "ByteMore", 1017, 2040 },
        AllocationCase { "Largest", 0x7fffffff, 0x800003f8 },
        AllocationCase { "SignBit", 0x80000000, Refused },
        AllocationCase { "WrapsToNothing", 0xfffffbf9, Refused },
        AllocationCase { "All32Bits", 0xffffffff, Refused }),
    caseName<AllocationCase>);

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

struct ResizeCase {
    const char* name;
    std::vector<std::uint32_t> sizes; ///< the first is allocated
    std::uint32_t capacity;
};

class Resize : public testing::TestWithParam<ResizeCase> { };

TEST_P(Resize, KeepsTheContentAndFollowsTheGrowthRule)
{
    const auto& [name, sizes, capacity] = GetParam();
    void* block = _XGblAlloc(0, sizes.front());
    std::uint32_t kept = sizes.front();
    std::memset(block, 0xaa, kept);
    for (auto size = sizes.begin() + 1; size != sizes.end(); ++size) {
        block = _XGblReAlloc(block, *size, 0);
        ASSERT_TRUE(block);
        EXPECT_EQ(_XGblSize(block), *size);
        kept = std::min(kept, *size);
        EXPECT_EQ(contentOf(block).substr(0, kept), std::string(kept, '\xaa'));
    }
    EXPECT_EQ(capacityOf(block), capacity);
    _XGblFree(block);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Resize,
    testing::Values(ResizeCase { "UpToTheCapacity", { 1000, 1016 }, 1016 },
        ResizeCase { "ByteBeyond", { 10, 1017 }, 2040 }, ResizeCase { "FarBeyond", { 10, 2000 }, 2040 },
        ResizeCase { "Doubles", { 2040, 2041 }, 4088 }, ResizeCase { "MoreThanTwice", { 2040, 9000 }, 9208 },
        ResizeCase { "DoublesTheSizeNotTheCapacity", { 3000, 10, 3065 }, 4088 },
        ResizeCase { "Shrinks", { 3000, 10 }, 3064 }, ResizeCase { "ToNothing", { 3000, 0 }, 3064 }),
    caseName<ResizeCase>);

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

struct ClearingCase {
    const char* name;
    std::uint32_t allocated, before, after;
    std::uint32_t flags;
};

class Clearing : public testing::TestWithParam<ClearingCase> { };

TEST_P(Clearing, TouchesExactlyTheBytesThatComeIntoUse)
{
    const ClearingCase& given = GetParam();
    void* block = _XGblAlloc(0, given.allocated);
    const std::uint32_t dirty = capacityOf(block);
    std::memset(block, 0xaa, dirty);
    block = _XGblReAlloc(block, given.before, 0);
    block = _XGblReAlloc(block, given.after, given.flags);
    ASSERT_TRUE(block);
    std::string expected(std::max(dirty, given.after), '\xaa');
    if (given.flags & 64)
        for (std::uint32_t i = given.before; i < given.after; ++i)
            expected[i] = '\0';
    EXPECT_EQ(std::string(static_cast<char*>(block), expected.size()), expected);
    _XGblFree(block);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Clearing,
    testing::Values(ClearingCase { "WithinTheCapacity", 100, 100, 300, 64 },
        ClearingCase { "WhatAShrinkLeft", 1000, 10, 500, 64 },
        ClearingCase { "BeyondTheCapacity", 1000, 900, 5000, 64 },
        ClearingCase { "AmongOtherFlags", 100, 100, 300, 0xffffffff },
        ClearingCase { "NotWhenShrinking", 1000, 1000, 10, 64 },
        ClearingCase { "NotWithoutTheFlag", 1000, 10, 500, 0 },
        ClearingCase { "NotWithOtherFlags", 1000, 10, 500, ~64u }),
    caseName<ClearingCase>);

struct RefusalCase {
    const char* name;
    std::uint32_t size, capacity;
    std::uint32_t refused;
};

class ResizeRefusal : public testing::TestWithParam<RefusalCase> { };

TEST_P(ResizeRefusal, LeavesTheBlockAsItWas)
{
    const RefusalCase& given = GetParam();
    const OwnedBlock block(_XGblAlloc(0, given.size));
    ASSERT_TRUE(block);
    std::memcpy(block.get(), "content", 8);
    EXPECT_EQ(_XGblReAlloc(block.get(), given.refused, 64), nullptr);
    EXPECT_EQ(_XGblSize(block.get()), given.size);
    EXPECT_EQ(capacityOf(block.get()), given.capacity);
    EXPECT_STREQ(static_cast<char*>(block.get()), "content");
}

INSTANTIATE_TEST_SUITE_P(Sizes, ResizeRefusal,
    testing::Values(RefusalCase { "SignBit", 100, 1016, 0x80000000 },
        RefusalCase { "WrapsToNothing", 100, 1016, 0xfffffbf9 },
        RefusalCase { "All32Bits", 100, 1016, 0xffffffff }),
    caseName<RefusalCase>);

} // namespace
