#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.WebviewMgr": opens web-view windows and finds them again.
class KJsApiWebviewMgr final : public KJCExtendJsObj<KJsApiWebviewMgr> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.WebviewMgr";
    static const MemberList& members();
};

} // namespace jsapi
