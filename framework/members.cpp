#include "framework/members.h"

#include "framework/novaextensionutils.h"

#include <new>

KResult NovaExtensionMemberNotSupported(IJSExtentionObject*, const JSContextEnv& context,
    JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception)
{
    Call call(context, arguments, result, exception);
    try {
        return call.fail(ErrorCode::OperationFailed, "not supported.").status();
    } catch (...) {
        return detail::handlerThrew(call);
    }
}

MemberDescriptor unbuilt(
    const char16_t* name, std::uint32_t mask, Type result, std::initializer_list<Parameter> parameters)
{
    return { name, MemberDescriptor::Method, mask, result,
        reinterpret_cast<JSMemberInvoke>(&NovaExtensionMemberNotSupported), parameters };
}

KResult detail::handlerThrew(Call& call) noexcept
try {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return call.fail(ErrorCode::OperationFailed, "out of memory.").status();
    } catch (...) {
        return call.fail(ErrorCode::OperationFailed, "internal error.").status();
    }
} catch (...) {
    return KR_NO_MEMORY;
}
