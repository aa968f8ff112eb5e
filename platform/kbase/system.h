// Facts of the operating system.
#pragma once

#include <cstdint>

extern "C" {

/// Writes the name of the user who runs the process into `buffer` (zero-terminated UTF-16) when it holds
/// `capacity` units or more, and returns the name's length in units without the terminator; 0 when the system
/// knows no name. A buffer too small is left as it was. [any thread]
std::uint32_t _XGetOSUserName(char16_t* buffer, std::uint32_t capacity);
}
