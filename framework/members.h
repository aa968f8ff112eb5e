// The table in which a class declares the members that script sees: one row a member, in the order of the
// API.
#pragma once

#include "framework/call.h"

#include <initializer_list>
#include <vector>

/// The category bits that a member carries to the JS core, which decides what they mean.
namespace Category {
inline constexpr std::uint32_t None = 0;
inline constexpr std::uint32_t Read = 0x1;
inline constexpr std::uint32_t Write = 0x2;
inline constexpr std::uint32_t Usual = 0x40;
inline constexpr std::uint32_t SharedRead = 0x41;
inline constexpr std::uint32_t SharedWrite = 0x42;
inline constexpr std::uint32_t CloudOpen = 0x50;
inline constexpr std::uint32_t Launch = 0x80;
inline constexpr std::uint32_t CloudRead = 0x100;
inline constexpr std::uint32_t CloudWrite = 0x200;
inline constexpr std::uint32_t Purchase = 0x240;
inline constexpr std::uint32_t CloudRequest = 0x380;
inline constexpr std::uint32_t Account = 0x80000;
} // namespace Category

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

/// A parameter: its type, and a name where the generic event members give one.
struct Parameter {
    constexpr Parameter(Type parameterType, const char16_t* parameterName = nullptr) // NOLINT(*-explicit-*)
        : type(parameterType)
        , name(parameterName)
    {
    }
    Type type;
    const char16_t* name;
};

/// One row of a table.
struct MemberDescriptor {
    enum Kind : std::int32_t { Method = 0, Property = 1 };

    const char16_t* name;
    Kind kind;
    std::uint32_t mask;
    Type result;
    JSMemberInvoke invoke;
    std::vector<Parameter> parameters; ///< 3 at most
};

namespace detail {

/// Answers for a handler that threw: nothing may cross into the JS core.
KResult handlerThrew(Call& call) noexcept;

template <auto Handler> struct Thunk;

/// The one way from the JS core's calling convention to a handler.
template <typename T, Reply (T::*Handler)(Call&)> struct Thunk<Handler> {
    static KResult method(IJSExtentionObject* self, const JSContextEnv& context, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception)
    {
        Call call(context, arguments, result, exception);
        try {
            return (static_cast<T*>(self)->*Handler)(call).status();
        } catch (...) {
            return handlerThrew(call);
        }
    }

    static KResult property(
        IJSExtentionObject* self, const JSContextEnv& context, KJSVariant& value, KJSVariant& exception)
    {
        JSApiArguments none;
        return method(self, context, none, value, exception);
    }
};

} // namespace detail

/// A method row.
template <auto Handler>
MemberDescriptor method(
    const char16_t* name, std::uint32_t mask, Type result, std::initializer_list<Parameter> parameters = {})
{
    return { name, MemberDescriptor::Method, mask, result,
        reinterpret_cast<JSMemberInvoke>(&detail::Thunk<Handler>::method), parameters };
}

/// A read-only property row, whose value is another object.
template <auto Handler> MemberDescriptor property(const char16_t* name, std::uint32_t mask, Type result)
{
    return { name, MemberDescriptor::Property, mask, result,
        reinterpret_cast<JSMemberInvoke>(&detail::Thunk<Handler>::property), {} };
}

/// A method that script sees but that is not built yet.
MemberDescriptor unbuilt(
    const char16_t* name, std::uint32_t mask, Type result, std::initializer_list<Parameter> parameters = {});

/// A class that script reaches only through an object of another class.
struct SubObjectClass {
    const char16_t* scriptName;
    IJSObjectFactory::Creator creator;
};

/// A class's table: its members in registration order, and the classes of the objects it hands out.
class MemberList {
public:
    MemberList(std::initializer_list<MemberDescriptor> members) // NOLINT(*-explicit-*)
        : m_members(members)
    {
    }

    /// Appends the four generic event members of an event class.
    template <typename T> MemberList withEvents() &&
    {
        const MemberList events = T::eventMembers();
        m_members.insert(m_members.end(), events.m_members.begin(), events.m_members.end());
        return std::move(*this);
    }

    /// Announces that the class makes objects of class T.
    template <typename T> MemberList handingOut() &&
    {
        m_subObjects.push_back({ T::ScriptName, [](IJSCreatable** creatable) -> IJSExtentionObject* {
                                    auto* object = new T;
                                    if constexpr (std::is_base_of_v<IJSCreatable, T>)
                                        *creatable = object;
                                    else
                                        *creatable = nullptr;
                                    return object;
                                } });
        return std::move(*this);
    }

    const std::vector<MemberDescriptor>& members() const { return m_members; }
    const std::vector<SubObjectClass>& subObjects() const { return m_subObjects; }

private:
    std::vector<MemberDescriptor> m_members;
    std::vector<SubObjectClass> m_subObjects;
};
