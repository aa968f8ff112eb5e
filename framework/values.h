// Reading and making the values that calls carry.
#pragma once

#include "vexlite/jsonvalue.h"

#include <QString>

/// The value itself, behind any number of references (a value that refers to nothing is undefined).
const MVARIANT& followed(const MVARIANT& value);

/// A value of its own: strings are copied, interfaces counted, references followed.
KJSVariant ownedCopy(const KJSVariant& value);

bool isNullOrUndefined(const MVARIANT& value);

/// The text of a string kind; empty for every other type.
QString textOf(const MVARIANT& value);

/// The text of a value: a string kind directly, everything else as the base library converts it, empty when
/// it does not convert.
QString convertedText(const MVARIANT& value);

/// A value as boolean, or `fallback` when it does not convert.
bool convertedBoolean(const MVARIANT& value, bool fallback);

/// The interface `iid` of an object value with one reference for the caller, or null.
void* queriedObject(const MVARIANT& value, const KIID& iid);

KJSVariant makeText(const QString& text);

/// A constant text on the heap: the suite may keep it when the library has gone.
inline QString ownText(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// One reference to a counted interface.
template <typename Interface> class KRef {
public:
    KRef() noexcept = default;
    /// Takes over one reference.
    explicit KRef(Interface* object) noexcept
        : m_object(object)
    {
    }
    KRef(KRef&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }
    KRef& operator=(KRef&& other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~KRef()
    {
        if (m_object)
            m_object->Release();
    }

    Interface* get() const noexcept { return m_object; }
    Interface* operator->() const noexcept { return m_object; }
    Interface& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object; }
    /// Gives the reference to the caller.
    Interface* release() noexcept { return std::exchange(m_object, nullptr); }

private:
    Interface* m_object = nullptr;
};

/// An object or function argument as one of its interfaces; null when it is none.
inline KRef<IJSONValue> objectOf(const MVARIANT& value)
{
    return KRef<IJSONValue>(static_cast<IJSONValue*>(queriedObject(value, IID_IJSONValue)));
}
inline KRef<IJSFunction> functionOf(const MVARIANT& value)
{
    return KRef<IJSFunction>(static_cast<IJSFunction*>(queriedObject(value, IID_IJSFunction)));
}
