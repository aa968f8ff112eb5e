#include "host/vexlite/memberlist.h"

namespace vexlite {

MemberList::MemberList(const JSMemberTable& table)
    : m_members(table.begin(), table.end())
{
}

JSParameter MemberList::Parameter(std::int32_t index, std::int32_t parameter) const
{
    const MemberRecord::Parameter& kept = record(index).parameters[static_cast<std::size_t>(parameter)];
    return { kept.type, kept.named ? kept.name.c_str() : nullptr, 0 };
}

} // namespace vexlite
