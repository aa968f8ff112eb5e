// Lists, maps, values that may be absent, and values of one of several types, as values of script's.
#pragma once

#include "framework/converter.h"

#include <map>
#include <variant>
#include <vector>

namespace jsapi {

/// An object by the names of its properties, for answers.
template <typename T> struct MapConverter {
    static KJSVariant toScript(const QMap<QString, T>& values)
    {
        KRef<KJSONValue> object(new KJSONValue);
        for (auto value = values.begin(); value != values.end(); ++value)
            object->set(value.key(), jsapi::toScript(value.value()));
        return KJSVariant::fromUnknown(object.release());
    }
    static QVariant toVariant(const QMap<QString, T>& values)
    {
        QVariantMap map;
        for (auto value = values.begin(); value != values.end(); ++value)
            map.insert(value.key(), jsapi::toVariant(value.value()));
        return map;
    }
};

/// An object whose properties are strings; another property is an empty one unless it converts.
template <> struct Converter<QMap<QString, QString>> : MapConverter<QString> {
    static bool isKind(const KJSVariant& value);
    static Reading read(const KJSVariant& value, QMap<QString, QString>& target);
};
template <> struct Converter<std::map<std::string, std::string>> {
    static bool isKind(const KJSVariant& value) { return jsapi::isKind<QMap<QString, QString>>(value); }
    static Reading read(const KJSVariant& value, std::map<std::string, std::string>& target);
    static QVariant toVariant(const std::map<std::string, std::string>& value);
};

/// An array of integers. One that holds anything else is wrong.
template <> struct Converter<std::vector<std::int32_t>> {
    static Reading read(const KJSVariant& value, std::vector<std::int32_t>& target);
};

template <typename T> struct Converter<std::optional<T>> {
    static bool isKind(const KJSVariant& value) { return jsapi::isKind<T>(value); }
    static Reading read(const KJSVariant& value, std::optional<T>& target)
    {
        T read {};
        const Reading reading = Converter<T>::read(value, read);
        if (reading == Reading::Done)
            target = std::move(read);
        return reading;
    }
};

/// The array that a value is, or null.
const IJSArray* findArray(const KJSVariant& value);

/// An array. One with an element that is not of its kind, or that its type refuses, is wrong.
template <typename T> struct Converter<std::vector<T>> {
    static bool isKind(const KJSVariant& value) { return findArray(value); }
    static Reading read(const KJSVariant& value, std::vector<T>& target)
    {
        const IJSArray* array = findArray(value);
        if (!array)
            return Reading::NotConvertible;
        std::vector<T> elements(static_cast<std::size_t>(array->Count()));
        for (std::size_t i = 0; i < elements.size(); ++i) {
            if (readValue(*array->At(static_cast<std::int32_t>(i)), elements[i], true) != Reading::Done)
                return Reading::Wrong;
        }
        target = std::move(elements);
        return Reading::Done;
    }
    static QVariant toVariant(const std::vector<T>& values)
    {
        QVariantList list;
        for (const T& value : values)
            list.append(Converter<T>::toVariant(value));
        return list;
    }
};

/// One of several types: the first whose kind a value is of.
template <typename... Types> struct Converter<std::variant<Types...>> {
    static bool isKind(const KJSVariant& value) { return (jsapi::isKind<Types>(value) || ...); }
    static Reading read(const KJSVariant& value, std::variant<Types...>& target)
    {
        Reading reading = Reading::NotConvertible;
        const auto tryType = [&]<typename T>(T candidate) {
            if (!jsapi::isKind<T>(value))
                return false;
            reading = Converter<T>::read(value, candidate);
            if (reading == Reading::Done)
                target = std::move(candidate);
            return true;
        };
        (void)(tryType(Types {}) || ...);
        return reading;
    }
    static QVariant toVariant(const std::variant<Types...>& value)
    {
        return std::visit([](const auto& held) { return jsapi::toVariant(held); }, value);
    }
};

template <typename T> struct Converter<QMap<QString, T>> : MapConverter<T> {
};

} // namespace jsapi
