// The base library's variant: a type code and a payload, and the calls that allocate and convert it.
#pragma once

#include "kbase/unknown.h"

/// Type codes of a variant's payload.
enum MVarType : std::uint16_t {
    MV_EMPTY = 0, ///< undefined
    MV_NULL = 1,
    MV_INT32 = 3,
    MV_DOUBLE = 5,
    MV_STRING = 8,   ///< `bstrVal`, from _XSysAllocStringLen; null is a null text
    MV_DISPATCH = 9, ///< `punkVal`, one reference owned
    MV_ERROR = 10,   ///< `scode`
    MV_BOOL = 11,    ///< `boolVal`, -1 true and 0 false
    MV_VARIANT = 12, ///< only in descriptors, or together with MV_BYREF
    MV_UNKNOWN = 13, ///< `punkVal`, one reference owned
    MV_INT64 = 20,
    MV_ARRAY = 27,             ///< `punkVal`, an IJSArray, one reference owned
    MV_LPSTR = 30,             ///< `pszVal`, zero-terminated UTF-8, not owned
    MV_LPWSTR = 31,            ///< `pwszVal`, zero-terminated UTF-16, not owned
    MV_BYREF_VARIANT = 0x400C, ///< `pvarVal`, not owned: readers follow it first
};

/// A string payload: UTF-16, zero-terminated, its length kept in front of the first unit.
using XBSTR = char16_t*;

/// A plain variant: no constructor, no destructor. Who owns the payload is said by the type code above.
struct MVARIANT {
    std::uint16_t vt;
    std::uint16_t reserved[3];
    union {
        std::int16_t boolVal;
        std::int32_t lVal;
        std::int64_t llVal;
        double dblVal;
        KResult scode;
        XBSTR bstrVal;
        const char* pszVal;
        const char16_t* pwszVal;
        IUnknown* punkVal;
        MVARIANT* pvarVal;
        void* record[2];
    };
};
static_assert(sizeof(MVARIANT) == 24);

extern "C" {

/// Allocates a string of `length` UTF-16 units and copies them from `text` (null: leaves them zero).
/// The caller owns the result and ends it with _XSysFreeString. Null when memory is short. [any thread]
XBSTR _XSysAllocStringLen(const char16_t* text, std::uint32_t length);

/// Frees a string of _XSysAllocStringLen; null does nothing. [any thread]
void _XSysFreeString(XBSTR text);

/// The string's length in UTF-16 units, zero for null. [any thread]
std::uint32_t _XSysStringLen(const char16_t* text);

/// Converts `source` to `type` into `target`, which the caller owns afterwards: a string must be freed, an
/// interface released. Numbers, booleans and strings convert into each other: integers exactly or not at all,
/// booleans to "true" and "false", numbers to and from their shortest decimal text. MV_DISPATCH and
/// MV_UNKNOWN convert into each other. A by-reference source is followed. On failure `target` becomes empty
/// and a code other than 0 is returned. `target` may not be `source`. `flags` must be 0. [any thread]
KResult _MVariantChangeType(
    MVARIANT* target, const MVARIANT* source, std::uint16_t flags, std::uint16_t type);
}
