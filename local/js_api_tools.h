#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Tools": pages, mail, processes and archives.
class KJsApiTools final : public KJCExtendJsObj<KJsApiTools> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Tools";
    static const MemberList& members();
};

} // namespace jsapi
