// The table in which a class declares the members that script sees: one row a member, in the order of the
// API.
//
//     static const MemberList list { "Files and directories.", {
//         member<&Self::copy>(u"copy", Category::Usual, Type::JsValue, { Type::JsValue },
//             "Copies a file.", { &PathIsIllegal, &OverrideFailed }),
//         ...
//     } };
//
// A row says what the JS core is to know, then what readers are to know and the signature does not say: what
// the member does, and the failures that the handler itself returns. What parameters refuse is known from
// their types.
#pragma once

#include "framework/answer.h"
#include "framework/arguments.h"
#include "framework/documentation.h"
#include "framework/objectbase.h"

#include <initializer_list>

namespace jsapi {

/// The category bits that a member carries to the JS core, which decides what they mean.
enum class Category : std::uint32_t {
    None = 0,
    Read = 0x1,
    Write = 0x2,
    Usual = 0x40,
    SharedRead = 0x41,
    SharedWrite = 0x42,
    CloudOpen = 0x50,
    Launch = 0x80,
    CloudRead = 0x100,
    CloudWrite = 0x200,
    Purchase = 0x240,
    CloudRequest = 0x380,
    Account = 0x80000,
};

/// Type codes in member descriptors.
enum class Type : std::int32_t {
    None = 0,
    String = 8,
    Boolean = 11,
    Variant = 12,
    Object = 13, ///< an object or a function
    Array = 27,
    JsValue = 0x8004, ///< any value; the handler converts it itself
};

/// A parameter as the JS core sees it, with the name that only the generic event members publish; or with a
/// name and a description for readers.
struct Parameter {
    constexpr Parameter() = default;
    constexpr Parameter(Type parameterType, const char16_t* publishedName = nullptr) // NOLINT(*-explicit-*)
        : type(parameterType)
        , name(publishedName)
    {
    }
    constexpr Parameter(Type parameterType, const char* label, const char* doc = "")
        : type(parameterType)
        , documentation(label, doc)
    {
    }
    constexpr Parameter(Type parameterType, const char16_t* publishedName, const char* doc)
        : type(parameterType)
        , name(publishedName)
        , documentation(nullptr, doc)
    {
    }

    Type type = Type::None;
    const char16_t* name = nullptr;
    [[no_unique_address]] ParameterDocumentation documentation;
};

/// One row of a table, or the two rows of a pair of members that add and remove listeners.
struct MemberDescriptor {
    enum Kind : std::int32_t { Method = 0, Property = 1 };
    static constexpr std::size_t MaxParameters = 3;

    const char16_t* name;
    Kind kind;
    Category category;
    Type result;
    JSMemberInvoke invoke;
    std::array<Parameter, MaxParameters> parameters;
    std::uint32_t parameterCount;
    [[no_unique_address]] MemberDocumentation documentation;
    const char16_t* counterpart = nullptr; ///< the name of the member that removes listeners
    JSMemberInvoke counterpartInvoke = nullptr;
};

namespace detail {

/// The failure for a handler that threw: nothing may cross into the JS core.
KResult failForException(Call& call) noexcept;

template <typename Object, typename Argument>
bool readArgument(ArgumentReader& reader, Object& object, Argument& argument)
{
    if constexpr (requires { argument.read(reader, object); })
        return argument.read(reader, object);
    else
        return argument.read(reader);
}

template <auto Handler> struct Signature;
template <typename T, typename Return, typename... Declared, Return (T::*Handler)(Declared...)>
struct Signature<Handler> {
    using Object = T;
    using Result = Return;
    using Parameters = std::tuple<std::remove_cvref_t<Declared>...>;
    using Arguments = std::tuple<Argument<std::remove_cvref_t<Declared>>...>;
};
template <typename Return, typename... Declared, Return (*Handler)(Declared...)> struct Signature<Handler> {
    using Object = KJCExtentionObjBase;
    using Result = Return;
    using Parameters = std::tuple<std::remove_cvref_t<Declared>...>;
    using Arguments = std::tuple<Argument<std::remove_cvref_t<Declared>>...>;
};

/// The one way from the JS core's calling convention to a handler: a member of the object, or a function. A class with a
/// Failure `NoObject` says by it that the JS core has called a member's function without an object.
template <auto Handler, typename Object = typename Signature<Handler>::Object> struct Thunk {
    static KResult method(IJSExtentionObject* self, const JSContextEnv& context, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception)
    {
        Call call(context, arguments, result, exception);
        try {
            if constexpr (requires { Object::NoObject; }) {
                if (!self)
                    return call.fail(Object::NoObject);
            }
            Object& object = *static_cast<Object*>(self);
            ArgumentReader reader(call);
            typename Signature<Handler>::Arguments read;
            return std::apply(
                [&](auto&... argument) {
                    if (!(readArgument(reader, object, argument) && ...))
                        return call.fail(reader.refusal());
                    if constexpr (std::is_member_pointer_v<decltype(Handler)>)
                        return writeAnswer(call, (object.*Handler)(argument.get()...));
                    else
                        return writeAnswer(call, Handler(argument.get()...));
                },
                read);
        } catch (...) {
            return failForException(call);
        }
    }

    static KResult property(
        IJSExtentionObject* self, const JSContextEnv& context, KJSVariant& value, KJSVariant& exception)
    {
        JSApiArguments none;
        return method(self, context, none, value, exception);
    }
};

MemberDescriptor makeRow(const char16_t* name, MemberDescriptor::Kind kind, Category category, Type result,
    JSMemberInvoke invoke, std::initializer_list<Parameter> parameters,
    const MemberDocumentation& documentation);

JSMemberInvoke unbuiltInvoke();

} // namespace detail

using FailureList = std::initializer_list<const Failure*>;

/// A method.
template <auto Handler, typename Object = typename detail::Signature<Handler>::Object>
MemberDescriptor member(const char16_t* name, Category category, Type result,
    std::initializer_list<Parameter> parameters, const char* doc, FailureList failures = {})
{
    return detail::makeRow(name, MemberDescriptor::Method, category, result,
        reinterpret_cast<JSMemberInvoke>(&detail::Thunk<Handler, Object>::method), parameters,
        MemberDocumentation::of<Handler>(doc, failures));
}
template <auto Handler>
MemberDescriptor member(
    const char16_t* name, Category category, Type result, const char* doc, FailureList failures = {})
{
    return member<Handler>(name, category, result, {}, doc, failures);
}

/// A read-only property, whose value is another object.
template <auto Handler, typename Object = typename detail::Signature<Handler>::Object>
MemberDescriptor getter(
    const char16_t* name, Category category, Type result, const char* doc, FailureList failures = {})
{
    return detail::makeRow(name, MemberDescriptor::Property, category, result,
        reinterpret_cast<JSMemberInvoke>(&detail::Thunk<Handler, Object>::property), {},
        MemberDocumentation::of<Handler>(doc, failures));
}

/// A method that script sees but that is not built yet.
inline MemberDescriptor unbuilt(const char16_t* name, Category category, Type result,
    std::initializer_list<Parameter> parameters = {}, const char* doc = "")
{
    return detail::makeRow(name, MemberDescriptor::Method, category, result, detail::unbuiltInvoke(),
        parameters, MemberDocumentation::ofUnbuilt(doc));
}

/// The same for a pair of members that add and remove listeners.
MemberDescriptor unbuiltListeners(const char16_t* add, const char16_t* remove, Category category);

class MemberList;

/// A class that script reaches only through an object of another class.
struct SubObjectClass {
    const char16_t* scriptName;
    const MemberList& (*members)();
};

/// A class's table: its members in registration order, the classes of the objects that it hands out, its
/// events.
class MemberList {
public:
    MemberList(const char* doc, std::initializer_list<MemberDescriptor> rows);

    /// Appends the four generic event members of an event class, which emits these events.
    template <typename... Events> MemberList withEvents(const Events&... events) &&
    {
        appendEventMembers();
        m_documentation.addEvents(events...);
        return std::move(*this);
    }

    /// Says that the class hands out objects of class T.
    template <typename T> MemberList handingOut() &&
    {
        m_subObjects.push_back({ T::ScriptName, &T::members });
        return std::move(*this);
    }

    const std::vector<MemberDescriptor>& members() const { return m_members; }
    const std::vector<SubObjectClass>& subObjects() const { return m_subObjects; }
    const ListDocumentation& documentation() const { return m_documentation; }

private:
    void append(const MemberDescriptor& row);
    void appendEventMembers();

    std::vector<MemberDescriptor> m_members;
    std::vector<SubObjectClass> m_subObjects;
    [[no_unique_address]] ListDocumentation m_documentation;
};

} // namespace jsapi
