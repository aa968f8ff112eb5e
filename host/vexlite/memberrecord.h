// MemberRecord: the core's description of a member. The records are in the module's tables, their strings and
// code belong to the core.
#pragma once

#include "vexlite/jsextension.h"

#include <QString>
#include <array>
#include <string>

namespace vexlite {

inline constexpr int maximumParameters = 3;

struct MemberRecord final : JSMemberEntry {
    struct Parameter {
        std::uint64_t type = 0;
        bool named = false;
        std::u16string name;
    };

    std::u16string name;
    JSAccess access = JSAccess::Method; ///< numerically the kind of the member
    std::uint32_t mask = 0;
    std::int32_t resultType = 0;
    int parameterCount = 0;
    std::array<Parameter, maximumParameters> parameters;

    QString nameText() const { return QString::fromUtf16(name.data(), static_cast<int>(name.size())); }

    /// The entry must have been made by the registry, as all are.
    static const MemberRecord& of(const JSMemberEntry& entry)
    {
        return static_cast<const MemberRecord&>(entry);
    }
};

} // namespace vexlite
