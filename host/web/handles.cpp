#include "host/web/handles.h"

namespace engine::web {

const Handle* Handles::find(std::int64_t id) const
{
    const auto found = m_handles.find(id);
    return found == m_handles.end() ? nullptr : &found->second;
}

std::int64_t Handles::idOf(IJSExtentionObject* object) const
{
    const auto found = m_ids.find(object);
    return found == m_ids.end() ? 0 : found->second;
}

bool Handles::writeAgain(WireWriter& writer, std::int64_t id)
{
    const auto found = m_handles.find(id);
    if (found == m_handles.end())
        return false;
    ++found->second.sent;
    writer.unit('h');
    writer.count(static_cast<std::uint64_t>(id));
    writer.count(static_cast<std::uint64_t>(found->second.nativeClass->id));
    return true;
}

bool Handles::write(WireWriter& writer, IJSExtentionObject* object, const JSContextEnv& context,
    const QString& name, KResult& status)
{
    if (writeAgain(writer, idOf(object)))
        return true;
    vexlite::BoundObject bound = vexlite::Core::instance()->bindSubObject(context, object);
    status = bound.status;
    if (status != KR_OK || !bound.object || !bound.members)
        return false;
    const QString known = bound.name;
    write(writer, std::move(bound), known.isEmpty() ? name : known);
    return true;
}

std::int64_t Handles::write(WireWriter& writer, vexlite::BoundObject bound, const QString& name)
{
    IJSExtentionObject* object = bound.object.get();
    std::int64_t id = idOf(object);
    if (!id) {
        const NativeClass& nativeClass = classOf(object, *bound.members.get(), name);
        id = ++m_lastId;
        m_ids.emplace(object, id);
        m_handles.emplace(id, Handle { std::move(bound.object), &nativeClass });
        vexlite::Core::instance()->addLiveObjects(1);
    }
    writeAgain(writer, id);
    return id;
}

const NativeClass& Handles::classOf(IJSExtentionObject* object, IJSMemberList& members, const QString& tag)
{
    auto made = std::make_unique<NativeClass>();
    made->id = static_cast<int>(m_classes.size());
    made->typeId = object->GetTypeId();
    made->tag = tag;
    for (std::int32_t i = 0; i < members.Count(); ++i) {
        const QString name = QString::fromUtf16(members.Name(i));
        if (m_rights.allows(tag, name, members.Mask(i)))
            made->members.emplace(members.Id(i),
                std::pair(members.Kind(i) == 0 ? JSAccess::Method : JSAccess::PropertyGet, name));
    }
    for (const auto& known : m_classes) {
        if (known->typeId == made->typeId && known->members == made->members)
            return *known;
    }
    WireWriter text;
    text.count(static_cast<std::uint64_t>(made->id));
    text.text(tag);
    text.count(made->members.size());
    for (const auto& [id, member] : made->members) {
        text.unit(member.first == JSAccess::Method ? 'm' : 'g');
        text.count(static_cast<std::uint64_t>(id));
        text.text(member.second);
    }
    m_newClasses.add(text.written());
    m_classes.push_back(std::move(made));
    return *m_classes.back();
}

void Handles::release(std::int64_t id, std::int64_t sent)
{
    const auto found = m_handles.find(id);
    if (found == m_handles.end() || (found->second.sent -= sent) > 0)
        return;
    // Released last: its end may call back.
    const Handle dropped = std::move(found->second);
    m_handles.erase(found);
    m_ids.erase(dropped.object.get());
    vexlite::Core::instance()->addLiveObjects(-1);
}

void Handles::clear()
{
    const auto handles = std::exchange(m_handles, {});
    m_ids.clear();
    if (vexlite::Core* core = vexlite::Core::instance())
        core->addLiveObjects(-static_cast<int>(handles.size()));
}

} // namespace engine::web
