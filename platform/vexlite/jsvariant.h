// KJSVariant: one value between the library and the JS core. JSApiArguments: the arguments of one call.
// JSContextEnv: the page (context) that calls.
//
// This is the one platform header with bodies in it: both sides copy these values, so both must agree on how.
#pragma once

#include "kbase/variant.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

/// One value exchanged with the JS core: a variant and the owner of its string payload. Copies share the
/// string and hold their own reference to an interface. Not thread-safe, like every value.
class KJSVariant {
public:
    KJSVariant() noexcept
        : m_value {}
    {
    }

    /// Takes over `value`: its interface reference, or its string through `owner`.
    KJSVariant(const MVARIANT& value, std::shared_ptr<void> owner) noexcept
        : m_value(value)
        , m_owner(std::move(owner))
    {
    }

    KJSVariant(const KJSVariant& other) noexcept
        : m_value(other.m_value)
        , m_owner(other.m_owner)
    {
        if (holdsInterface())
            m_value.punkVal->AddRef();
    }

    KJSVariant(KJSVariant&& other) noexcept
        : m_value(std::exchange(other.m_value, MVARIANT {}))
        , m_owner(std::move(other.m_owner))
    {
    }

    KJSVariant& operator=(KJSVariant other) noexcept
    {
        std::swap(m_value, other.m_value);
        m_owner.swap(other.m_owner);
        return *this;
    }

    ~KJSVariant()
    {
        if (holdsInterface())
            m_value.punkVal->Release();
    }

    static KJSVariant null() noexcept { return plain(MV_NULL); }

    static KJSVariant fromBool(bool value) noexcept
    {
        KJSVariant made = plain(MV_BOOL);
        made.m_value.boolVal = value ? -1 : 0;
        return made;
    }

    static KJSVariant fromInt32(std::int32_t value) noexcept
    {
        KJSVariant made = plain(MV_INT32);
        made.m_value.lVal = value;
        return made;
    }

    static KJSVariant fromInt64(std::int64_t value) noexcept
    {
        KJSVariant made = plain(MV_INT64);
        made.m_value.llVal = value;
        return made;
    }

    static KJSVariant fromDouble(double value) noexcept
    {
        KJSVariant made = plain(MV_DOUBLE);
        made.m_value.dblVal = value;
        return made;
    }

    /// Copies the text. When memory is short the value is an error that carries KR_NO_MEMORY.
    static KJSVariant fromString(std::u16string_view text)
    {
        KJSVariant made;
        XBSTR copy = _XSysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size()));
        if (!copy || text.size() > 0xffffffffu) {
            _XSysFreeString(copy);
            made.m_value.vt = MV_ERROR;
            made.m_value.scode = KR_NO_MEMORY;
            return made;
        }
        made.m_owner =
            std::shared_ptr<void>(copy, [](void* payload) { _XSysFreeString(static_cast<XBSTR>(payload)); });
        made.m_value.vt = MV_STRING;
        made.m_value.bstrVal = copy;
        return made;
    }

    /// Takes over one reference of `object`; null makes an empty value.
    static KJSVariant fromUnknown(IUnknown* object, MVarType type = MV_UNKNOWN) noexcept
    {
        KJSVariant made = plain(object ? type : MV_EMPTY);
        made.m_value.punkVal = object;
        return made;
    }

    /// The type code, by-reference values included.
    std::uint16_t type() const noexcept { return m_value.vt; }

    /// The plain variant, for reading. Its payload lives as long as this value or a copy of it.
    const MVARIANT& raw() const noexcept { return m_value; }

    bool isEmpty() const noexcept { return m_value.vt == MV_EMPTY; }

    /// The text of an MV_STRING, as long-lived as raw(); empty for every other type.
    std::u16string_view text() const noexcept
    {
        if (m_value.vt != MV_STRING || !m_value.bstrVal)
            return {};
        return { m_value.bstrVal, _XSysStringLen(m_value.bstrVal) };
    }

private:
    static KJSVariant plain(MVarType type) noexcept
    {
        KJSVariant made;
        made.m_value.vt = type;
        return made;
    }

    bool holdsInterface() const noexcept
    {
        return (m_value.vt == MV_UNKNOWN || m_value.vt == MV_DISPATCH || m_value.vt == MV_ARRAY)
            && m_value.punkVal;
    }

    MVARIANT m_value;
    std::shared_ptr<void> m_owner;
};

/// The ordered arguments of one call. Owned by the caller, valid until the call returns: copy what is kept.
class JSApiArguments {
public:
    constexpr JSApiArguments() noexcept = default;
    constexpr JSApiArguments(const KJSVariant* first, std::size_t count) noexcept
        : m_first(first)
        , m_count(count)
    {
    }

    constexpr std::size_t size() const noexcept { return m_count; }
    /// `index` must be below size().
    constexpr const KJSVariant& operator[](std::size_t index) const noexcept { return m_first[index]; }
    constexpr const KJSVariant* begin() const noexcept { return m_first; }
    constexpr const KJSVariant* end() const noexcept { return m_first + m_count; }

private:
    const KJSVariant* m_first = nullptr;
    std::size_t m_count = 0;
};

/// The context of a call: which page, in which browser. A plain value that may be copied and kept; it goes
/// back to the JS core unchanged. A context whose page has gone stays harmless: what is sent to it is
/// dropped.
struct JSContextEnv {
    std::int64_t browserId;
    std::int64_t contextId;

    /// The target that means every page.
    static constexpr JSContextEnv everyContext() noexcept { return { -1, -1 }; }
    friend constexpr bool operator==(const JSContextEnv&, const JSContextEnv&) noexcept = default;
};
static_assert(sizeof(JSContextEnv) == 16);
