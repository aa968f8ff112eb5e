// Looking at a memory block from outside.
#pragma once

#include "exports/vexlitejsapi.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

/// The 32-bit field that lies `distance` bytes before the data.
inline std::uint32_t fieldBefore(const void* handle, int distance)
{
    std::uint32_t value;
    std::memcpy(&value, static_cast<const char*>(handle) - distance, sizeof value);
    return value;
}

inline std::uint32_t capacityOf(const void* handle)
{
    return fieldBefore(handle, 4);
}

inline std::string contentOf(void* handle)
{
    return { static_cast<const char*>(_XGblLock(handle)), _XGblSize(handle) };
}

struct BlockDeleter {
    void operator()(void* handle) const { _XGblFree(handle); }
};
using OwnedBlock = std::unique_ptr<void, BlockDeleter>;
