// Converter<T>: how a C++ value and a value of script's become each other. One specialisation for each type
// that a member takes or returns; structs with fields (framework/fields.h), enumerations with choices, lists
// and maps have theirs from here.
#pragma once

#include "framework/fields.h"
#include "framework/kjsonvalue.h"

#include <QVariantMap>
#include <map>
#include <variant>
#include <vector>

namespace jsapi {

/// How the reading of a value ended.
enum class Reading {
    Done,
    Absent,
    NotConvertible, ///< mostly as if it were absent
    Wrong,          ///< must be refused, WrongParameters unless something else is declared
};

/// What a type offers, as far as values of it pass in that direction:
///     static Reading read(const KJSVariant& value, T& target);   // leaves `target` as it is unless Done
///     static bool isKind(const KJSVariant& value);               // whether it needs no conversion
///     static QVariant toVariant(const T& value);                 // for promises, lists and payloads
///     static KJSVariant toScript(const T& value);                // for results; without it toVariant serves
template <typename T> struct Converter;

template <typename T> QVariant toVariant(const T& value)
{
    return Converter<T>::toVariant(value);
}

KJSVariant convertVariant(const QVariant& value);

template <typename T> KJSVariant toScript(const T& value)
{
    if constexpr (requires { Converter<T>::toScript(value); })
        return Converter<T>::toScript(value);
    else
        return convertVariant(Converter<T>::toVariant(value));
}

/// Whether a value is of T's kind without any conversion. A type that says nothing of it converts none.
template <typename T> bool isKind(const KJSVariant& value)
{
    if constexpr (requires { Converter<T>::isKind(value); })
        return Converter<T>::isKind(value);
    else
        return true;
}

inline bool isGiven(const KJSVariant& value)
{
    return dereference(value.raw()).vt != MV_EMPTY;
}

/// Reads a value into `target`, which undefined leaves as it is. What is of another kind is wrong where the
/// reading is `strict`.
template <typename T> Reading readValue(const KJSVariant& value, T& target, bool strict = false)
{
    if (!isGiven(value))
        return Reading::Absent;
    return strict && !isKind<T>(value) ? Reading::Wrong : Converter<T>::read(value, target);
}

template <typename T> Reading assign(T& target, std::optional<T>&& converted)
{
    if (!converted)
        return Reading::NotConvertible;
    target = std::move(*converted);
    return Reading::Done;
}

template <> struct Converter<bool> {
    static bool isKind(const KJSVariant& value) { return isBoolean(value.raw()); }
    static Reading read(const KJSVariant& value, bool& target)
    {
        return assign(target, convertToBoolean(value.raw()));
    }
    static QVariant toVariant(bool value) { return value; }
    static KJSVariant toScript(bool value) { return KJSVariant::fromBool(value); }
};

template <> struct Converter<std::int32_t> {
    static bool isKind(const KJSVariant& value) { return isInteger(value.raw()); }
    static Reading read(const KJSVariant& value, std::int32_t& target)
    {
        return assign(target, convertToInt32(value.raw()));
    }
    static QVariant toVariant(std::int32_t value) { return value; }
    static KJSVariant toScript(std::int32_t value) { return KJSVariant::fromInt32(value); }
};

template <> struct Converter<std::int64_t> {
    static QVariant toVariant(std::int64_t value) { return static_cast<qlonglong>(value); }
    static KJSVariant toScript(std::int64_t value) { return KJSVariant::fromInt64(value); }
};
template <> struct Converter<qlonglong> : Converter<std::int64_t> {
};

template <> struct Converter<double> {
    static bool isKind(const KJSVariant& value) { return isNumber(value.raw()); }
    static Reading read(const KJSVariant& value, double& target)
    {
        return assign(target, convertToDouble(value.raw()));
    }
    static QVariant toVariant(double value) { return value; }
    static KJSVariant toScript(double value) { return KJSVariant::fromDouble(value); }
};

template <> struct Converter<QString> {
    static bool isKind(const KJSVariant& value) { return isString(value.raw()); }
    static Reading read(const KJSVariant& value, QString& target)
    {
        return assign(target, convertToString(value.raw()));
    }
    static QVariant toVariant(const QString& value) { return value; }
    static KJSVariant toScript(const QString& value) { return makeString(value); }
};

/// A string that leaves the process as UTF-8. One with half a surrogate pair, in place of which UTF-8 would
/// have something else, is refused.
template <> struct Converter<std::string> {
    static bool isKind(const KJSVariant& value) { return isString(value.raw()); }
    static Reading read(const KJSVariant& value, std::string& target);
    static QVariant toVariant(const std::string& value) { return QString::fromStdString(value); }
};

template <> struct Converter<QStringList> {
    static QVariant toVariant(const QStringList& value) { return value; }
};

/// Any value that is neither a function nor a native object. Only where it really may be anything.
template <> struct Converter<QVariant> {
    static Reading read(const KJSVariant& value, QVariant& target);
    static QVariant toVariant(const QVariant& value) { return value; }
};

template <> struct Converter<QVariantMap> {
    static QVariant toVariant(const QVariantMap& value) { return value; }
};

/// Any value, as the JS core has it.
template <> struct Converter<KJSVariant> {
    static Reading read(const KJSVariant& value, KJSVariant& target)
    {
        target = copyValue(value);
        return Reading::Done;
    }
    static KJSVariant toScript(const KJSVariant& value) { return value; }
};

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

/// An array of strings.
template <> struct Converter<std::vector<std::string>> {
    static bool isKind(const KJSVariant& value);
    static Reading read(const KJSVariant& value, std::vector<std::string>& target);
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

/// The enumerator that a string names; nothing when it names none.
template <HasChoices Enum> std::optional<Enum> findChoice(const QString& string)
{
    for (const Choice<Enum>& choice : ChoicesOf<Enum>) {
        if (choice.string && string == QLatin1String(choice.string))
            return choice.value;
    }
    return std::nullopt;
}

/// The enumerator of that number; nothing when there is none.
template <HasChoices Enum> std::optional<Enum> findChoice(std::optional<std::int32_t> number)
{
    for (const Choice<Enum>& choice : ChoicesOf<Enum>) {
        if (!choice.string && number == static_cast<std::int32_t>(choice.value))
            return choice.value;
    }
    return std::nullopt;
}

/// What is none of the choices is wrong.
template <HasChoices Enum> struct Converter<Enum> {
    static constexpr bool IsString = ChoicesOf<Enum>[0].string != nullptr;

    static bool isKind(const KJSVariant& value)
    {
        return IsString ? isString(value.raw()) : isInteger(value.raw());
    }
    static Reading read(const KJSVariant& value, Enum& target)
    {
        std::optional<Enum> found;
        if constexpr (IsString)
            found = findChoice<Enum>(readString(value.raw()));
        else
            found = findChoice<Enum>(convertToInt32(value.raw()));
        return found ? assign(target, std::move(found)) : Reading::Wrong;
    }
    static QVariant toVariant(Enum value)
    {
        for (const Choice<Enum>& choice : ChoicesOf<Enum>) {
            if (choice.value == value && choice.string)
                return heapString(choice.string);
        }
        return static_cast<std::int32_t>(value);
    }
};

void insertValue(QVariantMap& map, const QString& name, const QVariant& value);

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
