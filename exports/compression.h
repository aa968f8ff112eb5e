// What the compressors have in common.
#pragma once

#include "exports/vexlitejsapi.h"

#include <cstdint>
#include <limits>
#include <new>
#include <optional>
#define ZLIB_CONST
#include <zlib.h>

static_assert(VEXLITE_COMPRESS_OK == Z_OK && VEXLITE_COMPRESS_STREAM_ERROR == Z_STREAM_ERROR
    && VEXLITE_COMPRESS_MEM_ERROR == Z_MEM_ERROR && VEXLITE_COMPRESS_BUF_ERROR == Z_BUF_ERROR
    && VEXLITE_COMPRESS_VERSION_ERROR == Z_VERSION_ERROR);

namespace jsapi {

/// The bytes to reserve for the output, if that is `most` or less.
inline std::optional<std::uint32_t> outputBound(std::uint32_t length, std::uint32_t most)
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

} // namespace jsapi
