// Bounded copies of memory and strings: every call takes the room there is and refuses what does not fit.
#pragma once

#include <cstddef>

extern "C" {

/// Copies `count` bytes into a buffer of `room` bytes. Returns 0, or an errno value (EINVAL for null
/// pointers, ERANGE when `count` exceeds `room`; the target's bytes are then cleared). [any thread]
int vmemcpy_s(void* target, std::size_t room, const void* source, std::size_t count);

/// Length of a zero-terminated string that is looked at no further than `room` bytes; 0 for null. [any
/// thread]
std::size_t c_strnlen_s(const char* text, std::size_t room);

/// Copies a zero-terminated UTF-16 string with its terminator into `room` units. Returns 0 or an errno value
/// as vmemcpy_s does; a target with room is then the empty string. [any thread]
int u_strcpy_s(char16_t* target, std::size_t room, const char16_t* source);
}
