#include "host/vexlite/registry.h"

#include "host/vexlite/memberlist.h"
#include "host/vexlite/trace.h"

#include <QLoggingCategory>
#include <algorithm>
#include <cstdarg>

namespace vexlite {

namespace {

Q_LOGGING_CATEGORY(registryLog, "vexlite.registry")

std::int64_t lastCreationTarget = 0;
std::int64_t lastToken = 0;

std::int32_t nextId(const JSMemberTable& table)
{
    return table.empty() ? 0 : table.rbegin()->first + 1;
}

/// The reason why a member can not be added, or null.
const char* findFault(const JSMemberTable& table, const MemberRecord& record, std::int32_t kind, int count)
{
    if (record.name.empty())
        return "it has no name";
    if (kind != static_cast<std::int32_t>(JSAccess::Method)
        && kind != static_cast<std::int32_t>(JSAccess::PropertyGet))
        return "its kind is unknown";
    if (!record.invoke)
        return "it has no handler";
    if (count < 0 || count > maximumParameters)
        return "its number of parameters is out of range";
    const bool known = std::any_of(table.begin(), table.end(),
        [&](const auto& entry) { return MemberRecord::of(*entry.second).name == record.name; });
    return known ? "the table has one of that name" : nullptr;
}

} // namespace

Registry::PendingBind::PendingBind(Registry& registry, const JSContextEnv& context)
    : m_registry(registry)
    , m_outer(registry.m_pending)
    , m_context(context)
    , m_target(++lastCreationTarget)
{
    registry.m_pending = this;
}

KResult Registry::Bind(
    IJSExtentionObject* object, std::int64_t creationContext, std::int64_t creationTarget, std::int64_t)
{
    Ref<IJSExtentionObject> bound = Ref<IJSExtentionObject>::adopt(object);
    PendingBind* place = m_pending;
    while (place && (place->m_target != creationTarget || place->creationContext() != creationContext))
        place = place->m_outer;
    if (!bound || !place || place->m_bound || !m_pages.isOpen(place->m_context))
        return KR_NOT_AVAILABLE;
    place->m_bound = true;
    place->m_object = std::move(bound);
    return KR_OK;
}

void Registry::CallCompleted(const JSContextEnv& context, KJSVariant&, std::int64_t extra)
{
    m_trace.recordEnd(context, extra);
}

void Registry::AssignTable(JSMemberTable& source, JSMemberTable& destination)
{
    if (&source == &destination)
        return;
    for (auto& [id, entry] : source)
        destination.emplace_hint(destination.end(), nextId(destination), std::move(entry));
    source.clear();
}

KResult Registry::PublishTable(const JSMemberTable& table, IJSMemberList** out)
{
    *out = new MemberList(table);
    return KR_OK;
}

const JSMemberEntry* Registry::FindMember(const JSMemberTable& table, std::int32_t id, JSAccess access)
{
    const auto found = table.find(id);
    if (found == table.end() || MemberRecord::of(*found->second).access != access)
        return nullptr;
    return found->second.get();
}

void Registry::AddMember(JSMemberTable& table, const char16_t* name, std::int32_t kind, std::uint32_t mask,
    std::int32_t resultType, ...)
{
    const auto record = std::make_shared<MemberRecord>();
    std::va_list rest;
    va_start(rest, resultType);
    record->invoke = va_arg(rest, JSMemberInvoke);
    const int count = va_arg(rest, int);
    record->name = name ? name : u"";
    const char* fault = findFault(table, *record, kind, count);
    for (int index = 0; !fault && index < count; ++index) {
        const JSParameter parameter = va_arg(rest, JSParameter);
        record->parameters[static_cast<std::size_t>(index)] = { parameter.type, parameter.name != nullptr,
            parameter.name ? parameter.name : u"" };
    }
    va_end(rest);
    if (fault) {
        qCWarning(registryLog, "member \"%s\" is left out: %s", qPrintable(record->nameText()), fault);
        return;
    }
    record->access = static_cast<JSAccess>(kind);
    record->mask = mask;
    record->resultType = resultType;
    record->parameterCount = count;
    table.emplace_hint(table.end(), nextId(table), record);
}

std::int64_t Registry::SubObjectToken(IJSExtentionObject* object)
{
    return numberOf(object);
}

std::int64_t numberOf(IJSExtentionObject* object)
{
    if (!object)
        return 0;
    if (!object->GetHostPointer())
        object->SetHostPointer(reinterpret_cast<void*>(++lastToken));
    return reinterpret_cast<std::int64_t>(object->GetHostPointer());
}

} // namespace vexlite
