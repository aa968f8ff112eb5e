#include "framework/bytes.h"

#include "vexlite/jsextension.h"

#include <limits>

namespace jsapi {

namespace {

KRef<IJSBytes> queryBytes(const KJSVariant& value)
{
    return KRef<IJSBytes>(static_cast<IJSBytes*>(queryObject(value.raw(), IID_IJSBytes)));
}

/// An object of script's that holds bytes, as long as the reference lives.
const BytesHolder* findHolder(const KJSVariant& value, KRef<IJSExtentionObject>& reference)
{
    reference = KRef<IJSExtentionObject>(
        static_cast<IJSExtentionObject*>(queryObject(value.raw(), IID_IJSExtentionObject)));
    return dynamic_cast<const BytesHolder*>(reference.get());
}

} // namespace

bool Converter<Bytes>::isKind(const KJSVariant& value)
{
    KRef<IJSExtentionObject> reference;
    return queryBytes(value) || findHolder(value, reference);
}

Reading Converter<Bytes>::read(const KJSVariant& value, Bytes& target)
{
    if (const KRef<IJSBytes> bytes = queryBytes(value)) {
        if (bytes->Size() > static_cast<std::size_t>(std::numeric_limits<int>::max() / 2))
            return Reading::Wrong;
        target.data =
            QByteArray(reinterpret_cast<const char*>(bytes->Data()), static_cast<int>(bytes->Size()));
        return Reading::Done;
    }
    KRef<IJSExtentionObject> reference;
    const BytesHolder* holder = findHolder(value, reference);
    if (!holder)
        return Reading::Wrong;
    target.data = holder->bytes();
    return Reading::Done;
}

Reading Converter<TextOrBytes>::read(const KJSVariant& value, TextOrBytes& target)
{
    if (Bytes bytes; !isString(value.raw())) {
        const Reading reading = Converter<Bytes>::read(value, bytes);
        target.data = std::move(bytes.data);
        return reading;
    }
    const QString string = readString(value.raw());
    if (!string.isValidUtf16())
        return Reading::Wrong;
    target.data = string.toUtf8();
    return Reading::Done;
}

} // namespace jsapi
