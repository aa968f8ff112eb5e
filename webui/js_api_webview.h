#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Webview": the window that shows the calling page. Every page has its own.
class KJsApiWebview final : public KJCExtendJsObj<KJsApiWebview> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Webview";
    static const MemberList& members();
};

} // namespace jsapi
