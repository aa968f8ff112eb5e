// The root of every interface shared with the suite: identity, references, result codes.
#pragma once

#include <cstdint>
#include <cstring>

/// A 32-bit result code. 0 is success, everything with the top bit set is a failure.
using KResult = std::uint32_t;

inline constexpr KResult KR_OK = 0;
inline constexpr KResult KR_REJECTED = 1; ///< a handler failed the call; the exception slot says why
inline constexpr KResult KR_NO_MEMORY = 0x80000002u;
inline constexpr KResult KR_NO_INTERFACE = 0x80000004u;
inline constexpr KResult KR_NOT_AVAILABLE = 0x80000008u; ///< no JS core, or no such key

/// An interface identifier, in the usual layout: two 32-bit words' worth of fields, then eight bytes.
struct KIID {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];

    friend bool operator==(const KIID& a, const KIID& b) noexcept { return !std::memcmp(&a, &b, sizeof a); }
};
static_assert(sizeof(KIID) == 16);

inline constexpr KIID IID_IUnknown { 0x00000000, 0x0000, 0x0000, { 0xc0, 0, 0, 0, 0, 0, 0, 0x46 } };

/// Reference-counted interface. [any thread] for AddRef and Release; QueryInterface on the thread that owns
/// the object. The interface has no destructor of its own: Release is the only way to end an object.
class IUnknown {
public:
    /// Stores in `out` the interface `iid` with one reference for the caller and returns 0, or stores null
    /// and returns KR_NO_INTERFACE. `out` must not be null.
    virtual KResult QueryInterface(const KIID& iid, void** out) = 0;
    /// Adds a reference; returns the new count.
    virtual std::uint32_t AddRef() = 0;
    /// Gives a reference back; returns the new count. The object is gone when that is 0.
    virtual std::uint32_t Release() = 0;
};
