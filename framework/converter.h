// Converter<T>: how a C++ value and a value of script's become each other. One specialisation for each type
// that a member takes or returns. Plain values and enumerations with choices have theirs here, lists and maps in
// framework/collections.h, structs in framework/structs.h, which brings all.
#pragma once

#include "framework/fields.h"
#include "framework/kjsonvalue.h"

#include <QVariantMap>

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

/// An object of any such values. Everything else is wrong.
template <> struct Converter<QVariantMap> {
    static Reading read(const KJSVariant& value, QVariantMap& target);
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

} // namespace jsapi
