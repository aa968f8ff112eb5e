// The rivals of the framework's dispatch, behind an interface of their own.
#pragma once

#include "vexlite/jsextension.h"

#include <memory>

namespace bench {

class Dispatch {
public:
    virtual ~Dispatch() = default;
    virtual KResult invoke(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception) = 0;
};

// The members that can be called, in a table as long as an ordinary object's.
inline constexpr std::int32_t MemberCount = 10;
inline constexpr std::int32_t EmptyMember = 6;
inline constexpr std::int32_t EnvelopedMember = 7;

/// The least that a call by number can cost: one look-up in a map, one call of a function pointer.
std::unique_ptr<Dispatch> makeMapDispatch();

/// The calls that every object owes to the JS core around a member, written out one after the other. Has the
/// empty member only. There must be a JS core.
std::unique_ptr<Dispatch> makeCoreCalls();

/// The way of a call through the JS core.
class PlainCore {
public:
    virtual ~PlainCore() = default;
    virtual KResult call(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id,
        JSAccess access, JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception) = 0;
};

/// One that nobody can observe or check.
std::unique_ptr<PlainCore> makePlainCore();

} // namespace bench
