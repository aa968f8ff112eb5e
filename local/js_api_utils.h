#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Utils": clipboard, screens, colours and small helpers.
class KJsApiUtils final : public KJCExtendJsObj<KJsApiUtils> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Utils";
    static const MemberList& members();
};

} // namespace jsapi
