#include "framework/extensionobject.h"

namespace {

using jsapi::MemberDescriptor;
using jsapi::MemberList;
using jsapi::Parameter;

JSParameter describeParameter(const Parameter& parameter)
{
    return { static_cast<std::uint64_t>(parameter.type), parameter.name, 0 };
}

void addMember(JSMemberTable& table, const MemberDescriptor& member)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    if (!core)
        return;
    IJSRegistry* registry = core->Registry();
    const auto& given = member.parameters;
    const auto mask = static_cast<std::uint32_t>(member.category);
    const auto result = static_cast<std::int32_t>(member.result);
    switch (member.parameterCount) {
    case 0:
        registry->AddMember(table, member.name, member.kind, mask, result, member.invoke, 0);
        break;
    case 1:
        registry->AddMember(
            table, member.name, member.kind, mask, result, member.invoke, 1, describeParameter(given[0]));
        break;
    case 2:
        registry->AddMember(table, member.name, member.kind, mask, result, member.invoke, 2,
            describeParameter(given[0]), describeParameter(given[1]));
        break;
    default:
        registry->AddMember(table, member.name, member.kind, mask, result, member.invoke, 3,
            describeParameter(given[0]), describeParameter(given[1]), describeParameter(given[2]));
        break;
    }
}

} // namespace

ExtensionClass::~ExtensionClass()
{
    IVEXJSCore* core = m_announcedTo ? vexlite::GetVEXJSCore() : nullptr;
    IJSObjectFactory* factory = core ? core->Objects() : nullptr;
    if (factory && factory == m_announcedTo)
        factory->UnregisterClass(m_name);
}

std::int64_t ExtensionClass::typeId()
{
    if (m_typeId < 0) {
        IVEXJSCore* core = vexlite::GetVEXJSCore();
        if (!core)
            return KR_NOT_AVAILABLE;
        m_typeId = core->TypeIds()->AllocateTypeId(0);
    }
    return m_typeId;
}

void ExtensionClass::fill()
{
    const MemberList& declared = m_declared();
    JSMemberTable built;
    for (const MemberDescriptor& member : declared.members())
        addMember(built, member);
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    core->Registry()->AssignTable(built, m_table);
}

KRef<IJSExtentionObject> ExtensionClass::makeObject(
    const JSContextEnv& page, IJSObjectFactory::Creator creator, IJSONValue* options)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    IJSObjectFactory* factory = core ? core->Objects() : nullptr;
    if (!factory)
        return {};
    if (factory != m_announcedTo)
        factory->RegisterClass(m_name, creator);
    m_announcedTo = factory;
    return KRef<IJSExtentionObject>(factory->Create(m_name, page, options));
}

KResult ExtensionClass::publish(const JSContextEnv& context, IJSMemberList** out)
try {
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    if (!core)
        return KR_NOT_AVAILABLE;
    if (m_table.empty())
        fill();
    if (IJSTraceHook* hook = core->TraceHook()) {
        JSMemberTable replacement;
        if (hook->FilterTable(m_name, context, m_table, replacement))
            return core->Registry()->PublishTable(replacement, out);
    }
    return core->Registry()->PublishTable(m_table, out);
} catch (...) {
    return KR_NO_MEMORY;
}
