// The types of parameters, answers and payloads as the reference has them. Compiled into the tool that prints
// it only.
#pragma once

#include "framework/bytes.h"
#include "framework/events.h"
#include "framework/handle.h"

#include <string_view>
#include <utility>

namespace jsapi {

inline std::string toStdString(const char16_t* string)
{
    return QString::fromUtf16(string).toStdString();
}

/// The name of a C++ type without its namespaces and classes, and without the K of the suite's own.
template <typename T> std::string typeName()
{
    std::string_view name = __PRETTY_FUNCTION__;
    name.remove_prefix(name.find("T = ") + 4);
    name = name.substr(0, name.find_first_of(";]"));
    name.remove_prefix(name.rfind(':') + 1);
    const bool isSuites = name.size() > 1 && name[0] == 'K' && name[1] >= 'A' && name[1] <= 'Z';
    return std::string(name.substr(isSuites ? 1 : 0));
}

/// The name of a class of script's below "NovaExtension.".
template <typename T> std::string objectName()
{
    return toStdString(T::ScriptName).substr(std::string_view("NovaExtension.").size());
}

inline Json makeKind(const char* kind)
{
    return { { "kind", kind } };
}

/// DescribedType<T>::describe() is T as a type of the reference.
template <typename T> struct DescribedType;

template <typename T> Json describeType()
{
    return DescribedType<T>::describe();
}

#define DESCRIBE_AS(Type, kind)                                                                              \
    template <> struct DescribedType<Type> {                                                                 \
        static Json describe() { return makeKind(kind); }                                                    \
    };
DESCRIBE_AS(void, "void")
DESCRIBE_AS(bool, "boolean")
DESCRIBE_AS(std::int32_t, "integer")
DESCRIBE_AS(std::int64_t, "int64")
DESCRIBE_AS(qlonglong, "int64")
DESCRIBE_AS(double, "number")
DESCRIBE_AS(QString, "string")
DESCRIBE_AS(EventName, "string")
DESCRIBE_AS(Bytes, "bytes")
DESCRIBE_AS(TrueByDefault, "boolean")
DESCRIBE_AS(KJSVariant, "any")
DESCRIBE_AS(Rest, "any")
#undef DESCRIBE_AS

/// A string that UTF-8 can spell. Where it stands for an argument, others are converted to one.
template <> struct DescribedType<std::string> {
    static Json describe() { return { { "kind", "string" }, { "utf8", true } }; }
};

/// Neither functions nor native objects nor bytes.
template <> struct DescribedType<QVariant> {
    static Json describe() { return { { "kind", "any" }, { "plain", true } }; }
};

template <typename T> struct DescribedType<std::optional<T>> : DescribedType<T> {
};

template <typename T> struct DescribedType<std::vector<T>> {
    static Json describe() { return { { "kind", "array" }, { "items", describeType<T>() } }; }
};
template <> struct DescribedType<QStringList> : DescribedType<std::vector<QString>> {
};

template <typename... Types> struct DescribedType<std::variant<Types...>> {
    static Json describe()
    {
        return { { "kind", "union" }, { "types", Json::array({ describeType<Types>()... }) } };
    }
};

template <> struct DescribedType<TextOrBytes> : DescribedType<std::variant<QString, Bytes>> {
};

template <typename T> struct DescribedType<QMap<QString, T>> {
    static Json describe() { return { { "kind", "map" }, { "values", describeType<T>() } }; }
};
template <> struct DescribedType<std::map<std::string, std::string>> : DescribedType<QMap<QString, QString>> {
};

template <typename T> struct DescribedType<Handle<T>> {
    static Json describe() { return { { "kind", "handle" }, { "name", objectName<T>() } }; }
};

template <typename Payload>
struct DescribedType<RequiredCallback<Payload>> : DescribedType<Callback<Payload>> {
};
template <typename Payload> struct DescribedType<Watcher<Payload>> {
    static Json describe()
    {
        Json type = describeType<Callback<Payload>>();
        type["watches"] = true;
        return type;
    }
};
template <typename Payload> struct DescribedType<Callback<Payload>> {
    static Json describe()
    {
        return { { "kind", "function" },
            { "parameters",
                Json::array({ { { "name", "report" }, { "type", describeType<Payload>() } } }) } };
    }
};

template <typename Payload> struct DescribedType<Listener<Payload>> {
    static Json describe()
    {
        if constexpr (IsArguments<Payload>)
            return describeArguments();
        else
            return describeObject();
    }

private:
    static Json describeArguments()
    {
        Json parameters = Json::array();
        forEachField<Payload>([&](const auto& field, std::size_t) {
            using Value = std::remove_cvref_t<decltype(std::declval<Payload>().*field.member)>;
            parameters.push_back({ { "name", field.name }, { "type", describeType<Value>() } });
            return true;
        });
        return { { "kind", "function" }, { "parameters", std::move(parameters) } };
    }
    static Json describeObject()
    {
        using Carried = std::conditional_t<std::is_void_v<Payload>, QVariant, Payload>;
        return { { "kind", "function" },
            { "parameters",
                Json::array({ { { "name", "payload" }, { "type", describeType<Carried>() } } }) } };
    }
};
template <typename Payload>
struct DescribedType<RemovedListener<Payload>> : DescribedType<Listener<Payload>> {
};

template <HasChoices Enum> struct DescribedType<Enum> {
    static Json describe()
    {
        Json type = makeKind(Converter<Enum>::IsString ? "string" : "integer");
        for (const Choice<Enum>& choice : ChoicesOf<Enum>)
            type["values"].push_back(describeChoice(choice.value));
        return type;
    }
    static Json describeChoice(Enum value)
    {
        const QVariant variant = Converter<Enum>::toVariant(value);
        if constexpr (Converter<Enum>::IsString)
            return variant.toString().toStdString();
        else
            return variant.toInt();
    }
};

/// A default as the reference has it; null where there is nothing to say.
template <typename T> Json describeDefault(const T& value)
{
    if constexpr (std::is_arithmetic_v<T>)
        return value;
    else if constexpr (HasChoices<T>)
        return DescribedType<T>::describeChoice(value);
    else if constexpr (std::is_same_v<T, QString>)
        return value.isEmpty() ? Json() : Json(value.toStdString());
    else
        return {};
}

template <typename T> constexpr bool IsOptional = false;
template <typename T> constexpr bool IsOptional<std::optional<T>> = true;

/// Whether a failure is the one that every reader expects.
inline bool isUsual(const Failure& failure, const Failure& usual)
{
    return failure.code == usual.code && std::string_view(failure.text) == usual.text;
}

inline Json describeFailure(const Failure& failure)
{
    return { { "code", static_cast<std::int32_t>(failure.code) }, { "text", failure.text },
        { "rejects", failure.rejects } };
}

/// What a property refuses with, where that is not what all others do.
inline void describeRefusals(Json& described, const FieldFacts& facts)
{
    if (facts.isExpected)
        described["expected"] = true;
    if (facts.isRequired && !isUsual(*facts.missing, MissingParameters))
        described["missing"] = describeFailure(*facts.missing);
    if (!isUsual(*facts.wrong, WrongParameters))
        described["wrong"] = describeFailure(*facts.wrong);
}

template <HasFields Struct> struct DescribedType<Struct> {
    static Json describe()
    {
        Json fields = Json::array();
        forEachField<Struct>([&](const auto& field, std::size_t) {
            using Value = std::remove_cvref_t<decltype(std::declval<Struct>().*field.member)>;
            if (!field.name)
                return true;
            Json described { { "name", field.name }, { "type", describeType<Value>() },
                { "optional", !(field.isRequired || field.isExpected) || IsOptional<Value> } };
            if constexpr (std::is_default_constructible_v<Struct>) {
                const Json usual = field.isRequired ? Json() : describeDefault(Struct().*field.member);
                if (!usual.is_null())
                    described["default"] = usual;
            }
            describeRefusals(described, field);
            described["doc"] = field.doc.doc;
            fields.push_back(std::move(described));
            return true;
        });
        Json type { { "kind", "object" }, { "name", typeName<Struct>() }, { "fields", std::move(fields) } };
        if (std::get<0>(FieldList<Struct>).isStrict)
            type["strict"] = true;
        return type;
    }
};

/// Whether a converter refuses some values instead of ignoring them.
template <typename T> constexpr bool CanBeWrong = HasChoices<T>;
template <> inline constexpr bool CanBeWrong<std::string> = true;
template <> inline constexpr bool CanBeWrong<Bytes> = true;
template <> inline constexpr bool CanBeWrong<TextOrBytes> = true;
template <typename T> constexpr bool CanBeWrong<std::vector<T>> = true;
template <HasFields Struct> constexpr bool CanBeWrong<Struct> = true;
template <> inline constexpr bool CanBeWrong<std::map<std::string, std::string>> = true;
template <> inline constexpr bool CanBeWrong<QVariant> = true;
template <> inline constexpr bool CanBeWrong<QVariantMap> = true;
template <typename T> constexpr bool CanBeWrong<std::optional<T>> = CanBeWrong<T>;

/// Whether script may leave an argument out that is no object with fields.
template <typename T> constexpr bool CanBeLeftOut = false;
template <> inline constexpr bool CanBeLeftOut<TrueByDefault> = true;
template <> inline constexpr bool CanBeLeftOut<Rest> = true;
template <> inline constexpr bool CanBeLeftOut<QVariant> = true;
template <typename Payload> constexpr bool CanBeLeftOut<Callback<Payload>> = true;
template <typename Payload> constexpr bool CanBeLeftOut<RemovedListener<Payload>> = true;

/// A parameter of a handler: what it refuses and, where it takes an argument of script's, its type.
template <typename T> void describeParameter(SignatureDescription& signature)
{
    bool isOptional = false;
    Json refusals = Json::array();
    if constexpr (requires { Argument<T>::Refusals; }) {
        for (const Failure* refusal : Argument<T>::Refusals) {
            signature.refusals.push_back(*refusal);
            refusals.push_back(describeFailure(*refusal));
        }
    } else if constexpr (HasFields<T>) {
        isOptional = true;
        forEachField<T>([&](const auto& field, std::size_t) {
            using Value = std::remove_cvref_t<decltype(std::declval<T>().*field.member)>;
            if (field.isRequired)
                signature.refusals.push_back(*field.missing);
            if (CanBeWrong<Value> || (field.name && field.isStrict))
                signature.refusals.push_back(*field.wrong);
            isOptional = isOptional && !field.isRequired && !field.isExpected;
            return true;
        });
    } else if constexpr (CanBeWrong<T>) {
        signature.refusals.push_back(WrongParameters);
    }
    if constexpr (requires { typename Argument<T>::ScriptType; }) {
        signature.parameters.push_back({ { "type", describeType<typename Argument<T>::ScriptType>() },
            { "optional", false }, { "rest", false } });
    } else if constexpr (Argument<T>::IsScript) {
        signature.parameters.push_back({ { "type", describeType<T>() },
            { "optional", isOptional || CanBeLeftOut<T> }, { "rest", std::is_same_v<T, Rest> } });
    }
    if constexpr (Argument<T>::IsScript) {
        if (!refusals.empty())
            signature.parameters.back()["refusals"] = std::move(refusals);
    }
}

template <typename T> struct DescribedAnswer;
template <typename T> struct DescribedAnswer<Answer<T>> {
    static Json describe() { return { { "form", "envelope" }, { "type", describeType<T>() } }; }
};
template <typename T> struct DescribedAnswer<Answer<Promise<T>>> {
    static Json describe() { return { { "form", "promise" }, { "type", describeType<T>() } }; }
};
template <typename T> struct DescribedAnswer<Answer<Handle<T>>> {
    static Json describe() { return { { "form", "object" }, { "type", describeType<Handle<T>>() } }; }
};
template <typename T> struct DescribedAnswer<Answer<Plain<T>>> {
    static Json describe() { return { { "form", "plain" }, { "type", describeType<T>() } }; }
};

template <auto Handler> SignatureDescription MemberDocumentation::describeSignature()
{
    SignatureDescription signature;
    using Parameters = typename detail::Signature<Handler>::Parameters;
    [&]<typename... T>(std::type_identity<std::tuple<T...>>) { (describeParameter<T>(signature), ...); }(
        std::type_identity<Parameters>());
    signature.answer = DescribedAnswer<typename detail::Signature<Handler>::Result>::describe();
    return signature;
}

template <typename Payload> Json describePayloadOf(const Event<Payload>&)
{
    return describeType<Payload>();
}

template <typename AddedEvent> void ListDocumentation::addEvent(const AddedEvent& event)
{
    events.push_back(
        { { "name", event.name }, { "doc", event.doc }, { "payload", describePayloadOf(event) } });
}

} // namespace jsapi
