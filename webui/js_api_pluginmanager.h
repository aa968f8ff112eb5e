#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.PluginManager": finds plugins by name.
class KJsApiPluginManager final : public KJCExtendJsObj<KJsApiPluginManager> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.PluginManager";
    static const MemberList& members();
};

/// "NovaExtension.PluginManager.Plugin": one plugin of the suite.
class KJsApiPlugin final : public KJCExtendJsObj<KJsApiPlugin> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.PluginManager.Plugin";
    static const MemberList& members();
};

} // namespace jsapi
