#include "framework/members.h"

#include "framework/novaextensionutils.h"

#include <new>

using jsapi::Call;

KResult NovaExtensionMemberNotSupported(IJSExtentionObject*, const JSContextEnv& context,
    JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception)
{
    Call call(context, arguments, result, exception);
    try {
        return call.fail(jsapi::NotSupported);
    } catch (...) {
        return jsapi::detail::failForException(call);
    }
}

namespace jsapi {

namespace {

constexpr Failure OutOfMemory { ErrorCode::OperationFailed, "out of memory." };
constexpr Failure InternalError { ErrorCode::OperationFailed, "internal error." };

} // namespace

KResult detail::failForException(Call& call) noexcept
try {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return call.fail(OutOfMemory);
    } catch (...) {
        return call.fail(InternalError);
    }
} catch (...) {
    return KR_NO_MEMORY;
}

MemberDescriptor detail::makeRow(const char16_t* name, MemberDescriptor::Kind kind, Category category,
    Type result, JSMemberInvoke invoke, std::initializer_list<Parameter> parameters,
    const MemberDocumentation& documentation)
{
    MemberDescriptor row { name, kind, category, result, invoke, {},
        static_cast<std::uint32_t>(parameters.size()), documentation };
    std::copy(parameters.begin(), parameters.end(), row.parameters.begin());
    return row;
}

JSMemberInvoke detail::unbuiltInvoke()
{
    return reinterpret_cast<JSMemberInvoke>(&NovaExtensionMemberNotSupported);
}

MemberDescriptor unbuiltListeners(const char16_t* add, const char16_t* remove, Category category)
{
    MemberDescriptor row = unbuilt(add, category, Type::JsValue, { { Type::Object, "callback" } });
    row.counterpart = remove;
    row.counterpartInvoke = row.invoke;
    return row;
}

MemberList::MemberList(const char* doc, std::initializer_list<MemberDescriptor> rows)
    : m_documentation(doc)
{
    m_members.reserve(2 * rows.size());
    for (const MemberDescriptor& row : rows)
        append(row);
}

void MemberList::append(const MemberDescriptor& row)
{
    m_members.push_back(row);
    if (!row.counterpart)
        return;
    MemberDescriptor& remover = m_members.emplace_back(row);
    remover.name = row.counterpart;
    remover.invoke = row.counterpartInvoke;
    remover.documentation.describeRemover();
    m_members[m_members.size() - 2].counterpart = remover.counterpart = nullptr;
}

} // namespace jsapi
