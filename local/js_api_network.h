#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Network": downloads and HTTP requests.
class KJsApiNetwork final : public KJCExtendJsObj<KJsApiNetwork> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Network";
    static const MemberList& members();
};

} // namespace jsapi
