// Counted strings: a 32-bit byte count, the units, a terminator.
#include "kbase/variant.h"

#include <cstdlib>
#include <limits>

namespace {

using ByteCount = std::uint32_t;

constexpr std::uint32_t MaxUnits = std::numeric_limits<ByteCount>::max() / sizeof(char16_t) - 1;

} // namespace

XBSTR _XSysAllocStringLen(const char16_t* text, std::uint32_t length)
{
    if (length > MaxUnits)
        return nullptr;
    const ByteCount bytes = length * sizeof(char16_t);
    // Zeroed, which also sets the terminator and the units of a string without `text`.
    auto* block = static_cast<char*>(std::calloc(1, sizeof(ByteCount) + bytes + sizeof(char16_t)));
    if (!block)
        return nullptr;
    std::memcpy(block, &bytes, sizeof bytes);
    if (text)
        std::memcpy(block + sizeof bytes, text, bytes);
    return reinterpret_cast<XBSTR>(block + sizeof bytes);
}

void _XSysFreeString(XBSTR text)
{
    if (text)
        std::free(reinterpret_cast<char*>(text) - sizeof(ByteCount));
}

std::uint32_t _XSysStringLen(const char16_t* text)
{
    if (!text)
        return 0;
    ByteCount bytes;
    std::memcpy(&bytes, reinterpret_cast<const char*>(text) - sizeof bytes, sizeof bytes);
    return bytes / sizeof(char16_t);
}
