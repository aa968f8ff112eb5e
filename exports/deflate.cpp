// Compression into raw deflate data. Nothing else of the C functions needs the suite, so this is an object file of its own.
#include "exports/compression.h"
#include "framework/export.h"
#include "kbase/globalalloc.h"

#include <memory>

namespace {

/// The empty block that ends a sync flush, without the byte that its first bits share with data.
constexpr std::uint32_t SyncMarkerLength = 4;

constexpr int RawWindowBits = -15;
constexpr int MemoryLevel = 9;

struct DeflateEnder {
    void operator()(z_stream* stream) const { deflateEnd(stream); }
};

std::int32_t deflateIntoHostBlock(
    const Bytef* source, std::uint32_t length, void*& handle, std::uint32_t& deflatedLength)
{
    const auto bound = jsapi::outputBound(length, std::numeric_limits<std::uint32_t>::max());
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

VEXLITE_EXPORT std::int32_t _XDeflate(
    const void* source, std::uint32_t length, void** handle, std::uint32_t* deflatedLength)
{
    if (handle)
        *handle = nullptr;
    if (deflatedLength)
        *deflatedLength = 0;
    if (!handle || !deflatedLength || (!source && length))
        return VEXLITE_COMPRESS_STREAM_ERROR;
    return jsapi::withoutExceptions([&] {
        return deflateIntoHostBlock(static_cast<const Bytef*>(source), length, *handle, *deflatedLength);
    });
}
