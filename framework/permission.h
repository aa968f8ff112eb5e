// What a page may do beyond its own window, which the suite decides.
//
//     // of a member that always needs one: refused before the handler is called
//     Answer<QString> getClipboardText(const Permission<KPagePermission::ReadClipboard>&);
//     // with a subject
//     if (!isPermitted(page, KPagePermission::StartProgram, program))
//         return NotPermitted;
#pragma once

#include "framework/arguments.h"
#include "suite/kpagepermission.h"

namespace jsapi {

inline constexpr Failure NotPermitted { ErrorCode::OperationFailed, "Permission denied." };

inline bool isPermitted(const JSContextEnv& page, KPagePermission permission, const QString& subject = {})
{
    return kpagepermission::isGranted(page, permission, subject);
}

/// A parameter that refuses the call of a page without this permission.
template <KPagePermission Asked> struct Permission {
};

template <KPagePermission Asked> struct Argument<Permission<Asked>> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &NotPermitted };
    bool read(ArgumentReader& reader)
    {
        return isPermitted(reader.page(), Asked) || reader.refuse(NotPermitted);
    }
    Permission<Asked> get() const { return {}; }
};

} // namespace jsapi
