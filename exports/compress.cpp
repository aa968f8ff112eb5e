// The one-shot compressors.
#include "exports/vexlitejsapi.h"
#include "framework/export.h"
#include "kbase/globalalloc.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#define ZLIB_CONST
#include <zlib.h>

static_assert(VEXLITE_COMPRESS_OK == Z_OK && VEXLITE_COMPRESS_STREAM_ERROR == Z_STREAM_ERROR
    && VEXLITE_COMPRESS_MEM_ERROR == Z_MEM_ERROR && VEXLITE_COMPRESS_BUF_ERROR == Z_BUF_ERROR
    && VEXLITE_COMPRESS_VERSION_ERROR == Z_VERSION_ERROR);

namespace {

/// The empty block that ends a sync flush, without the byte that its first bits share with data.
constexpr std::uint32_t SyncMarkerLength = 4;

constexpr int RawWindowBits = -15;
constexpr int MemoryLevel = 9;

/// The bytes to reserve for the output, if that is `most` or less.
std::optional<std::uint32_t> outputBound(std::uint32_t length, std::uint32_t most)
{
    const std::uint64_t bound = std::uint64_t { length } + length / 1000 + 16;
    if (bound > most)
        return {};
    return static_cast<std::uint32_t>(bound);
}

/// Returns what `body` returns, or the code of the exception that it threw.
template <typename Body> std::int32_t withoutExceptions(Body body) noexcept
{
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return VEXLITE_COMPRESS_NO_MEMORY;
    } catch (...) {
        return VEXLITE_COMPRESS_UNEXPECTED;
    }
}

struct DeflateEnder {
    void operator()(z_stream* stream) const { deflateEnd(stream); }
};

std::int32_t compressIntoBlock(const Bytef* source, std::uint32_t length, void*& data, int level)
{
    const auto bound = outputBound(length, std::numeric_limits<std::int32_t>::max());
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

std::int32_t deflateIntoHostBlock(
    const Bytef* source, std::uint32_t length, void*& handle, std::uint32_t& deflatedLength)
{
    const auto bound = outputBound(length, std::numeric_limits<std::uint32_t>::max());
    if (!bound)
        return VEXLITE_COMPRESS_NO_MEMORY;
    z_stream stream {};
    if (const int error = deflateInit2(
            &stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, RawWindowBits, MemoryLevel, Z_DEFAULT_STRATEGY))
        return error;
    const std::unique_ptr<z_stream, DeflateEnder> ended(&stream);
    handle = mfxGlobalAlloc(*bound);
    if (!handle)
        return VEXLITE_COMPRESS_NO_MEMORY;
    stream.next_in = source;
    stream.avail_in = length;
    stream.next_out = static_cast<Bytef*>(handle);
    stream.avail_out = *bound;
    if (const int error = deflate(&stream, Z_SYNC_FLUSH))
        return error;
    // Only room that is left over says that the flush came to its end.
    if (stream.avail_in || !stream.avail_out)
        return VEXLITE_COMPRESS_BUF_ERROR;
    deflatedLength = static_cast<std::uint32_t>(stream.total_out) - SyncMarkerLength;
    return VEXLITE_COMPRESS_OK;
}

} // namespace

VEXLITE_EXPORT std::int32_t _XZlibCompress(
    const void* source, std::uint32_t length, void** data, std::int32_t level)
{
    if (data)
        *data = nullptr;
    if (!data || (!source && length))
        return VEXLITE_COMPRESS_STREAM_ERROR;
    return withoutExceptions(
        [&] { return compressIntoBlock(static_cast<const Bytef*>(source), length, *data, level); });
}

VEXLITE_EXPORT std::int32_t _XDeflate(
    const void* source, std::uint32_t length, void** handle, std::uint32_t* deflatedLength)
{
    if (handle)
        *handle = nullptr;
    if (deflatedLength)
        *deflatedLength = 0;
    if (!handle || !deflatedLength || (!source && length))
        return VEXLITE_COMPRESS_STREAM_ERROR;
    return withoutExceptions([&] {
        return deflateIntoHostBlock(static_cast<const Bytef*>(source), length, *handle, *deflatedLength);
    });
}
