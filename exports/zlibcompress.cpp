// Compression into memory blocks.
#include "exports/compression.h"
#include "framework/export.h"

namespace {

std::int32_t compressIntoBlock(const Bytef* source, std::uint32_t length, void*& data, int level)
{
    const auto bound = jsapi::outputBound(length, std::numeric_limits<std::int32_t>::max());
    void* block = bound ? _XGblAlloc(VEXLITE_GBL_ZERO, *bound) : nullptr;
    if (!block)
        return VEXLITE_COMPRESS_NO_MEMORY;
    uLongf compressed = *bound;
    const int error = compress2(static_cast<Bytef*>(block), &compressed, source, length, level);
    data = error ? nullptr : _XGblReAlloc(block, static_cast<std::uint32_t>(compressed), 0);
    if (!data)
        _XGblFree(block);
    return error;
}

} // namespace

VEXLITE_EXPORT std::int32_t _XZlibCompress(
    const void* source, std::uint32_t length, void** data, std::int32_t level)
{
    if (data)
        *data = nullptr;
    if (!data || (!source && length))
        return VEXLITE_COMPRESS_STREAM_ERROR;
    return jsapi::withoutExceptions(
        [&] { return compressIntoBlock(static_cast<const Bytef*>(source), length, *data, level); });
}
