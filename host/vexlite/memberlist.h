// MemberList: a published table. It shares the table's records, so it may outlive the table.
#pragma once

#include "host/vexlite/counted.h"
#include "host/vexlite/jsmemberlist.h"
#include "host/vexlite/memberrecord.h"

#include <vector>

namespace vexlite {

class MemberList final : public Counted<IJSMemberList> {
public:
    explicit MemberList(const JSMemberTable& table);

    std::int32_t Count() const override { return static_cast<std::int32_t>(m_members.size()); }
    std::int32_t Id(std::int32_t index) const override { return member(index).first; }
    const char16_t* Name(std::int32_t index) const override { return record(index).name.c_str(); }
    std::int32_t Kind(std::int32_t index) const override
    {
        return static_cast<std::int32_t>(record(index).access);
    }
    std::uint32_t Mask(std::int32_t index) const override { return record(index).mask; }
    std::int32_t ResultType(std::int32_t index) const override { return record(index).resultType; }
    std::int32_t ParameterCount(std::int32_t index) const override { return record(index).parameterCount; }
    JSParameter Parameter(std::int32_t index, std::int32_t parameter) const override;
    JSMemberInvoke Invoke(std::int32_t index) const override { return record(index).invoke; }

private:
    using Member = JSMemberTable::value_type;

    const Member& member(std::int32_t index) const { return m_members[static_cast<std::size_t>(index)]; }
    const MemberRecord& record(std::int32_t index) const { return MemberRecord::of(*member(index).second); }

    std::vector<Member> m_members;
};

} // namespace vexlite
