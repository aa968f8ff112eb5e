// Structs with fields (framework/fields.h) that a service replies as JSON.
#pragma once

#include "framework/structs.h"

#include <QJsonDocument>
#include <QVariantMap>

namespace jsapi {

/// What is absent, or of another type, stays at its initialiser or becomes empty.
template <typename T> T fromJson(const QVariant& value)
{
    if constexpr (HasFields<T>) {
        const QVariantMap map = value.toMap();
        T read;
        forEachField<T>([&](const auto& field, std::size_t index) {
            const auto found = map.find(fieldName<T>(index));
            if (found != map.end())
                read.*field.member = fromJson<std::remove_cvref_t<decltype(read.*field.member)>>(*found);
            return true;
        });
        return read;
    } else if constexpr (requires { typename T::value_type; } && !std::is_same_v<T, QString>) {
        T list;
        for (const QVariant& item : value.toList())
            list.push_back(fromJson<typename T::value_type>(item));
        return list;
    } else {
        return value.value<T>();
    }
}

template <typename T> T fromJson(const std::string& json)
{
    return fromJson<T>(QJsonDocument::fromJson(QByteArray::fromStdString(json)).toVariant());
}

} // namespace jsapi
