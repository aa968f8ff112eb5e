// Windows-style opening of files.
#pragma once

#include <cstdint>

/// An open file.
using XHANDLE = void*;

inline const XHANDLE X_INVALID_HANDLE =
    reinterpret_cast<XHANDLE>(std::intptr_t { -1 }); // NOLINT(*-int-to-ptr)

inline constexpr std::uint32_t X_GENERIC_WRITE = 0x40000000u;
inline constexpr std::uint32_t X_FILE_SHARE_READ = 1;
inline constexpr std::uint32_t X_OPEN_EXISTING = 3;

extern "C" {

/// Opens an existing regular file, without changing it. `name` is zero-terminated UTF-16. `access` is a set
/// of generic access rights; `share` says what others may do meanwhile, and the call fails when somebody does more
/// already or has the file locked. `disposition` must be X_OPEN_EXISTING, `security`, `attributes` and
/// `model` null or 0. X_INVALID_HANDLE on failure; never waits. The caller ends the handle with
/// _XCloseHandle. [any thread]
XHANDLE _XCreateFileW(const char16_t* name, std::uint32_t access, std::uint32_t share, void* security,
    std::uint32_t disposition, std::uint32_t attributes, XHANDLE model);

/// Closes a file, with its locks. As with any file, the process loses its own fcntl(F_SETLK) locks on it,
/// whoever took them; those of open file descriptions (F_OFD_SETLK) stay. False, with nothing done, for
/// X_INVALID_HANDLE and null. [any thread]
bool _XCloseHandle(XHANDLE handle);
}
