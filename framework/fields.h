// Fields: the named properties of a C++ struct that script passes or gets, declared once in the struct.
//
//     struct CopyOptions {
//         QString path, newPath;
//         bool overwrite = false;                                  // the default is the initialiser
//         static constexpr auto fields()
//         {
//             return std::tuple(required("path", &CopyOptions::path, "the file", PathIsEmpty),
//                 optional("newPath", &CopyOptions::newPath, "where to"),
//                 optional("overwrite", &CopyOptions::overwrite, "replace what is there"));
//         }
//     };
//
// A member that writes, sends or starts something takes nothing for what it is not: its struct returns
// strictly(std::tuple(...)), and nothing is converted then.
//
// A struct that is not ours, such as one of the suite's, gets a specialisation of Fields instead.
#pragma once

#include "framework/documentation.h"
#include "framework/failure.h"
#include "framework/values.h"

#include <array>
#include <tuple>
#include <type_traits>
#include <vector>

namespace jsapi {

/// What is declared of a property, whatever its type.
struct FieldFacts {
    const char* name; ///< null for one that script neither passes nor sees
    [[no_unique_address]] FieldDocumentation doc;
    bool isRequired = false;
    const Failure* missing = &MissingParameters; ///< of a required one: absent, of another type, or empty
    const Failure* wrong = &WrongParameters;     ///< what the type refuses
    bool hasFallback = false;
    bool isExpected = false; ///< the member itself refuses its absence
    bool isStrict = false;   ///< what is of another kind is wrong, instead of being converted
};

template <typename Struct, typename Value> struct Field : FieldFacts {
    /// Only numbers and booleans have one.
    using Fallback = std::conditional_t<std::is_arithmetic_v<Value>, Value, std::nullptr_t>;

    Value Struct::*member;
    Fallback fallback {}; ///< what a property stands for that is given and does not convert
};

/// A property that must be given, and not be empty. Its absence fails with `missing`, what its type refuses
/// with `wrong`.
template <typename Struct, typename Value>
constexpr auto required(const char* name, Value Struct::*member, FieldDocumentation doc,
    const Failure& missing = MissingParameters, const Failure& wrong = WrongParameters)
{
    return Field<Struct, Value> { { name, doc, true, &missing, &wrong }, member };
}

/// A property that may be left out, or be of a type that does not convert: the initialiser then stands.
template <typename Struct, typename Value>
constexpr auto optional(const char* name, Value Struct::*member, FieldDocumentation doc)
{
    return Field<Struct, Value> { { name, doc }, member };
}

/// The same, where what is given and does not convert stands for `fallback`.
template <typename Struct, typename Value>
constexpr auto optional(const char* name, Value Struct::*member, FieldDocumentation doc, Value fallback)
{
    return Field<Struct, Value> { { name, doc, false, &MissingParameters, &WrongParameters, true }, member,
        fallback };
}

/// A property that must be given, though only the member itself knows when to refuse its absence.
template <typename Struct, typename Value>
constexpr auto expected(const char* name, Value Struct::*member, FieldDocumentation doc)
{
    return Field<Struct, Value> { { name, doc, false, &MissingParameters, &WrongParameters, false, true },
        member };
}

/// A member that script neither passes nor sees: its initialiser stands.
template <typename Struct, typename Value> constexpr auto constant(Value Struct::*member)
{
    return Field<Struct, Value> { { nullptr, "" }, member };
}

/// The fields of a member that writes, sends or starts something: what is given, not undefined, and of another kind
/// is refused with the field's `wrong`, an argument that is no object with that of the first field.
template <typename... Fields> constexpr auto strictly(std::tuple<Fields...> fields)
{
    std::apply([](auto&... field) { ((field.isStrict = true), ...); }, fields);
    return fields;
}

/// A property of an answer or a payload.
template <typename Struct, typename Value>
constexpr auto property(const char* name, Value Struct::*member, FieldDocumentation doc)
{
    return Field<Struct, Value> { { name, doc, true }, member };
}

/// The fields of a struct: its own fields(), or those of a specialisation.
template <typename Struct> struct Fields;
template <typename Struct>
requires requires
{
    Struct::fields();
}
struct Fields<Struct> {
    static constexpr auto list() { return Struct::fields(); }
};

template <typename Struct>
concept HasFields = requires
{
    Fields<Struct>::list();
};

template <typename Struct> inline constexpr auto FieldList = Fields<Struct>::list();

/// Calls `action` with each field of a struct, in the order of their declaration, until it returns false.
template <typename Struct, typename Action> bool forEachField(Action action)
{
    std::size_t index = 0;
    return std::apply(
        [&](const auto&... field) { return (action(field, index++) && ...); }, FieldList<Struct>);
}

std::vector<QString> makeHeapStrings(std::initializer_list<const char*> strings);

/// The names of a struct's fields, on the heap: the suite may keep them.
template <typename Struct> const QString& fieldName(std::size_t index)
{
    static const std::vector<QString> names = std::apply(
        [](const auto&... field) { return makeHeapStrings({ field.name... }); }, FieldList<Struct>);
    return names[index];
}

/// The values of an enumeration that script may pass, each as a string or, without one, as its number. To be
/// specialised for each enumeration: `inline constexpr std::array<Choice<Mode>, 2> ChoicesOf<Mode> { ... };`
template <typename Enum> struct Choice {
    Enum value;
    const char* string = nullptr;
};
template <typename Enum> inline constexpr int ChoicesOf = 0;

template <typename Enum>
concept HasChoices = std::is_enum_v<Enum> && !std::is_same_v<decltype(ChoicesOf<Enum>), const int>;

} // namespace jsapi
