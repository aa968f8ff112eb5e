// Bytes and TextOrBytes: binary values of script's. Members take an ArrayBuffer, a typed array, a DataView or a ByteBuffer
// for them, and return a Uint8Array.
#pragma once

#include "framework/structs.h"

#include <QByteArray>

namespace jsapi {

struct Bytes {
    QByteArray data;
};

/// What a string is in UTF-8, or bytes.
struct TextOrBytes {
    QByteArray data;
};

/// An extension object of this library that stands for bytes where script passes it.
class BytesHolder {
public:
    virtual QByteArray bytes() const = 0;

protected:
    ~BytesHolder() = default;
};

/// Nothing else is taken for bytes: whatever else is given is wrong.
template <> struct Converter<Bytes> {
    static bool isKind(const KJSVariant& value);
    static Reading read(const KJSVariant& value, Bytes& target);
    static QVariant toVariant(const Bytes& value) { return value.data; }
};

/// A string with half a surrogate pair is wrong, as that of a std::string is.
template <> struct Converter<TextOrBytes> {
    static bool isKind(const KJSVariant& value)
    {
        return isString(value.raw()) || jsapi::isKind<Bytes>(value);
    }
    static Reading read(const KJSVariant& value, TextOrBytes& target);
};

} // namespace jsapi
