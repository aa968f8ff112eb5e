// Structured values: objects (IJSONValue), arrays (IJSArray), script functions (IJSFunction) and bytes (IJSBytes).
#pragma once

#include "vexlite/jsvariant.h"

#include <QString>
#include <QStringList>

inline constexpr KIID IID_IJSONValueBase { 0x75C124DE, 0x6967, 0x11EE,
    { 0xB1, 0xEE, 0xAF, 0x83, 0x68, 0x91, 0x7F, 0x33 } };
inline constexpr KIID IID_IJSONValue { 0x4770436A, 0x5E29, 0x4909,
    { 0x8F, 0x38, 0xD8, 0xDB, 0x0B, 0xBB, 0x95, 0x0E } };
inline constexpr KIID IID_IJSArray { 0x0B5B1F9E, 0x3C53, 0x4B0D,
    { 0x9A, 0x34, 0x1D, 0x7D, 0x2C, 0x60, 0x5B, 0x11 } };
inline constexpr KIID IID_IJSFunction { 0x5E0F6A34, 0x7A7E, 0x4E6B,
    { 0x8C, 0x55, 0x36, 0x91, 0x2E, 0xB8, 0x4C, 0x72 } };
inline constexpr KIID IID_IJSBytes { 0xB2C6F1A4, 0x3D0E, 0x4B57,
    { 0x9E, 0x21, 0x6A, 0xD8, 0x4F, 0x03, 0xC9, 0x75 } };

class IJSArray;

/// Slots 4 to 9 of a key/value object. [GUI thread]
class IJSONValueBase : public IUnknown {
public:
    /// The number of keys.
    virtual std::int32_t Count() const = 0;
    /// Copies up to `max` pairs in key order, each key as a string, and returns how many. `max` below 1
    /// copies nothing. Both arrays must have room for `max` values.
    virtual std::int32_t CopyOut(std::int32_t max, KJSVariant* keys, KJSVariant* values) const = 0;
    /// Removes every key and value.
    virtual void Clear() = 0;
    /// Appends every key, in key order.
    virtual void Keys(QStringList& keys) const = 0;
    virtual bool Has(const QString& key) const = 0;
    /// Copies a value and returns 0; an absent key gives an empty value and KR_NOT_AVAILABLE.
    virtual KResult Get(const QString& key, KJSVariant& value) const = 0;
};

/// A key/value object with one value a key, 26 slots with its destructors. Keys are ordered as QString
/// compares. The object owns its values. The typed getters convert as _MVariantChangeType does; what is
/// absent or does not convert reads as the fallback. [GUI thread]
class IJSONValue : public IJSONValueBase {
public:
    /// The value of a key, borrowed until the object changes, or null. Slot 10.
    virtual const KJSVariant* Find(const QString& key) const = 0;
    /// Removes a key; false when there was none. Slot 11.
    virtual bool Remove(const QString& key) = 0;

    // Slots 12 to 17: store a value, in place of an earlier one.
    virtual void SetValue(const QString& key, const KJSVariant& value) = 0;
    virtual void SetBoolean(const QString& key, bool value) = 0;
    virtual void SetInt32(const QString& key, std::int32_t value) = 0;
    virtual void SetInt64(const QString& key, std::int64_t value) = 0;
    virtual void SetDouble(const QString& key, double value) = 0;
    virtual void SetString(const QString& key, const QString& value) = 0;

    // Slots 18 to 22: the typed getters.
    virtual bool GetBoolean(const QString& key, bool fallback) const = 0;
    virtual std::int32_t GetInt32(const QString& key, std::int32_t fallback) const = 0;
    virtual std::int64_t GetInt64(const QString& key, std::int64_t fallback) const = 0;
    virtual double GetDouble(const QString& key, double fallback) const = 0;
    virtual QString GetString(const QString& key, const QString& fallback) const = 0;

    /// The pair at a position in key order, both borrowed until the object changes; false past the end.
    /// Slot 23.
    virtual bool At(std::int32_t position, const QString** key, const KJSVariant** value) const = 0;
    /// The array under a key, borrowed until the object changes, or null when there is none. Slot 24.
    virtual IJSArray* GetArray(const QString& key) const = 0;
};

/// An ordered list of values, the payload of MV_ARRAY. It owns its values. [GUI thread]
class IJSArray : public IUnknown {
public:
    virtual std::int32_t Count() const = 0;
    /// The value at `index`, borrowed until the array changes, or null past the end.
    virtual const KJSVariant* At(std::int32_t index) const = 0;
    virtual void Append(const KJSVariant& value) = 0;
};

/// A script function that native code keeps. It belongs to one page: when the page has gone, Call fails with
/// KR_NOT_AVAILABLE and does nothing. Its references may outlive the page. [GUI thread]
class IJSFunction : public IUnknown {
public:
    /// Calls the function and waits for its answer. `result` may be null. What the function throws is
    /// reported by the JS core as the page's uncaught error, and the call returns KR_REJECTED.
    virtual KResult Call(const JSApiArguments& arguments, KJSVariant* result) = 0;
};

/// Bytes, in an MV_UNKNOWN. What script passes as an ArrayBuffer, a typed array or a DataView is a copy of the bytes that
/// it shows, made when the call began: what script does with its own later changes nothing here. What script gets is a
/// Uint8Array of its own with a copy. The bytes never change and live as long as there is a reference. [any thread]
class IJSBytes : public IUnknown {
public:
    /// The first of them; may be null when there are none.
    virtual const std::uint8_t* Data() const = 0;
    virtual std::size_t Size() const = 0;
};
