#include "host/vexlite/classnames.h"

#include "host/vexlite/registry.h"

namespace vexlite {

void ClassNames::add(std::int64_t typeId, const QString& name)
{
    Class& known = m_classes[typeId];
    known.name = name;
    known.isHandedOut = name.count(QLatin1Char('.')) > 1;
}

void ClassNames::add(std::int64_t typeId, const IJSMemberList& members)
{
    Class& known = m_classes[typeId];
    // A page may see fewer members than another one.
    if (static_cast<std::size_t>(members.Count()) <= known.members.size())
        return;
    for (std::int32_t i = 0; i < members.Count(); ++i)
        known.members.emplace(members.Id(i), QString::fromUtf16(members.Name(i)));
}

QString ClassNames::nameOf(std::int64_t typeId) const
{
    const auto known = m_classes.find(typeId);
    return known == m_classes.end() ? QString() : known->second.name;
}

QString ClassNames::memberName(std::int64_t typeId, std::int32_t id) const
{
    const auto known = m_classes.find(typeId);
    if (known == m_classes.end())
        return {};
    const auto member = known->second.members.find(id);
    return member == known->second.members.end() ? QString() : member->second;
}

std::int64_t ClassNames::instanceOf(IJSExtentionObject* object) const
{
    const auto known = object ? m_classes.find(object->GetTypeId()) : m_classes.end();
    return known != m_classes.end() && known->second.isHandedOut ? numberOf(object) : 0;
}

} // namespace vexlite
