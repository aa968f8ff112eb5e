// Reading and making the values that calls carry.
#pragma once

#include "vexlite/jsonvalue.h"

#include <QString>
#include <optional>
#include <string>

/// The value itself, behind any number of references (a value that refers to nothing is undefined).
const MVARIANT& dereference(const MVARIANT& value);

/// A value of its own: strings are copied, interfaces counted, references followed.
KJSVariant copyValue(const KJSVariant& value);

bool isNullOrUndefined(const MVARIANT& value);

/// The characters of a string value; null for a value of any other type.
QString readString(const MVARIANT& value);

// What a value is, before any conversion. An integer is a number of any type that is a whole one of 32 bits.
bool isString(const MVARIANT& value);
bool isBoolean(const MVARIANT& value);
bool isInteger(const MVARIANT& value);
bool isNumber(const MVARIANT& value);

// A value converted as the base library converts it; nothing when it does not convert, as undefined and null
// do not. This is the one rule for properties of objects and for the positional arguments that are converted
// at all.
std::optional<QString> convertToString(const MVARIANT& value);
std::optional<bool> convertToBoolean(const MVARIANT& value);
std::optional<std::int32_t> convertToInt32(const MVARIANT& value);
/// Never one that is not finite.
std::optional<double> convertToDouble(const MVARIANT& value);

/// The interface `iid` of an object value with one reference for the caller, or null.
void* queryObject(const MVARIANT& value, const KIID& iid);

KJSVariant makeString(const QString& string);

/// A constant string on the heap: the suite may keep it when the library has gone. The one way to make
/// constant strings in the library; literals of Qt's lie in the library's own data.
inline QString heapString(const char* latin1)
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

/// A further reference, for as long as what is called may let the object go.
template <typename Interface> KRef<Interface> hold(Interface& object)
{
    object.AddRef();
    return KRef<Interface>(&object);
}

/// An object or function value as one of its interfaces; null when it is none.
inline KRef<IJSONValue> queryJsonObject(const MVARIANT& value)
{
    return KRef<IJSONValue>(static_cast<IJSONValue*>(queryObject(value, IID_IJSONValue)));
}
inline KRef<IJSFunction> queryFunction(const MVARIANT& value)
{
    return KRef<IJSFunction>(static_cast<IJSFunction*>(queryObject(value, IID_IJSFunction)));
}
