// Structs with fields (framework/fields.h) as objects of script's.
#pragma once

#include "framework/collections.h"

namespace jsapi {

/// A struct's fields by their names, without the optional values that are not there.
template <HasFields Struct> QVariantMap toMap(const Struct& value)
{
    QVariantMap map;
    forEachField<Struct>([&](const auto& field, std::size_t index) {
        const auto& member = value.*field.member;
        if constexpr (requires { member.has_value(); }) {
            if (member)
                insertValue(map, fieldName<Struct>(index), jsapi::toVariant(*member));
        } else {
            insertValue(map, fieldName<Struct>(index), jsapi::toVariant(member));
        }
        return true;
    });
    return map;
}

/// A struct as an object of script's, likewise.
template <HasFields Struct> KRef<KJSONValue> toObject(const Struct& value)
{
    KRef<KJSONValue> object(new KJSONValue);
    forEachField<Struct>([&](const auto& field, std::size_t index) {
        const auto& member = value.*field.member;
        if constexpr (requires { member.has_value(); }) {
            if (member)
                object->putConstant(fieldName<Struct>(index), jsapi::toScript(*member));
        } else {
            object->putConstant(fieldName<Struct>(index), jsapi::toScript(member));
        }
        return true;
    });
    return object;
}

/// The other way round, for an object that is the library's own: what is absent or does not convert stays at
/// its initialiser, and nothing is refused. `object` may be null.
template <HasFields Struct> Struct fromObject(IJSONValue* object)
{
    Struct value;
    forEachField<Struct>([&](const auto& field, std::size_t index) {
        KJSVariant property;
        if (object && field.name && object->Get(fieldName<Struct>(index), property) == KR_OK)
            (void)readValue(property, value.*field.member);
        return true;
    });
    return value;
}

/// A struct within another one is read as its own fields say. Where one is refused it is wrong as a whole.
template <HasFields Struct> Reading readStruct(const KJSVariant& value, Struct& target);

template <HasFields Struct> struct Converter<Struct> {
    static bool isKind(const KJSVariant& value) { return bool(queryJsonObject(value.raw())); }
    static Reading read(const KJSVariant& value, Struct& target) { return readStruct(value, target); }
    static QVariant toVariant(const Struct& value) { return toMap(value); }
    static KJSVariant toScript(const Struct& value)
    {
        return KJSVariant::fromUnknown(toObject(value).release());
    }
};

// Whether a required property counts as missing though it was read.
template <typename T> bool isMissing(const T&)
{
    return false;
}
inline bool isMissing(const QString& string)
{
    return string.isEmpty();
}
inline bool isMissing(const std::string& string)
{
    return string.empty();
}
inline bool isMissing(const std::vector<std::string>& list)
{
    return list.empty();
}
inline bool isMissing(const KJSVariant& value)
{
    return isNullOrUndefined(value.raw());
}
inline bool isMissing(const QVariant& value)
{
    return !value.isValid() || value.userType() == QMetaType::Nullptr;
}

template <HasFields Struct> Reading readStruct(const KJSVariant& value, Struct& target)
{
    const KRef<IJSONValue> object = queryJsonObject(value.raw());
    if (!object)
        return Reading::NotConvertible;
    Struct read;
    const bool isRight = forEachField<Struct>([&](const auto& field, std::size_t index) {
        KJSVariant property;
        object->Get(fieldName<Struct>(index), property);
        const Reading reading = readValue(property, read.*field.member, field.isStrict);
        return reading != Reading::Wrong
            && !(field.isRequired && (reading != Reading::Done || isMissing(read.*field.member)));
    });
    return isRight ? assign(target, std::optional(std::move(read))) : Reading::Wrong;
}

} // namespace jsapi
