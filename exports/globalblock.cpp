// Memory blocks that know their size.
#include "exports/vexlitejsapi.h"
#include "framework/export.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

/// What lies before a block's data.
struct BlockHeader {
    std::uint32_t size;
    std::uint32_t capacity;
};
static_assert(sizeof(BlockHeader) == 8);

constexpr std::uint64_t AllocationUnit = 1024;
constexpr std::uint32_t MaxBlockSize = std::numeric_limits<std::int32_t>::max();

BlockHeader* headerOf(void* handle)
{
    return static_cast<BlockHeader*>(handle) - 1;
}

/// The bytes that a block for `size` bytes takes, header and all.
constexpr std::uint64_t allocationFor(std::uint64_t size)
{
    return (size + sizeof(BlockHeader) + AllocationUnit - 1) & ~(AllocationUnit - 1);
}

/// The bytes for data in an allocation. It fits its field: a block that has to grow has less than 2^31 bytes,
/// and twice as many take 2^32 at most.
constexpr std::uint32_t capacityOf(std::uint64_t allocation)
{
    return static_cast<std::uint32_t>(allocation - sizeof(BlockHeader));
}

} // namespace

VEXLITE_EXPORT void* _XGblAlloc(std::uint32_t flags, std::uint32_t size)
{
    if (size > MaxBlockSize)
        return nullptr;
    const std::uint64_t allocation = allocationFor(size);
    // Memory fresh from the system is 0 already, and calloc knows.
    void* memory = flags & VEXLITE_GBL_ZERO ? std::calloc(1, allocation) : std::malloc(allocation);
    if (!memory)
        return nullptr;
    auto* block = static_cast<BlockHeader*>(memory);
    *block = { size, capacityOf(allocation) };
    return block + 1;
}

VEXLITE_EXPORT void* _XGblReAlloc(void* handle, std::uint32_t size, std::uint32_t flags)
{
    if (!handle)
        return _XGblAlloc(flags, size);
    if (size > MaxBlockSize)
        return nullptr;
    BlockHeader* block = headerOf(handle);
    const std::uint64_t oldSize = block->size;
    if (block->capacity < size) {
        const std::uint64_t allocation = allocationFor(std::max<std::uint64_t>(size, 2 * oldSize));
        block = static_cast<BlockHeader*>(std::realloc(block, allocation));
        if (!block)
            return nullptr;
        block->capacity = capacityOf(allocation);
    }
    auto* data = reinterpret_cast<char*>(block + 1);
    if (flags & VEXLITE_GBL_ZERO && size > oldSize)
        std::memset(data + oldSize, 0, size - oldSize);
    block->size = size;
    return data;
}

VEXLITE_EXPORT std::uint32_t _XGblSize(const void* handle)
{
    return handle ? (static_cast<const BlockHeader*>(handle) - 1)->size : 0;
}

VEXLITE_EXPORT std::uint32_t _XGblFlags(const void*)
{
    return 0;
}

VEXLITE_EXPORT void* _XGblLock(void* handle)
{
    return handle;
}

VEXLITE_EXPORT std::int32_t _XGblUnlock(void*)
{
    return 1;
}

VEXLITE_EXPORT void* _XGblFree(void* handle)
{
    if (handle)
        std::free(headerOf(handle));
    return nullptr;
}
