#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Hive": remote feature configuration, read and watched.
class KJsApiHive final : public KJCExtendJsObj<KJsApiHive> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Hive";
    static const MemberList& members();
};

/// "NovaExtension.CirrusConfig": remote feature configuration by switch and section.
class KJsApiCirrusConfig final : public KJCExtendJsObj<KJsApiCirrusConfig> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CirrusConfig";
    static const MemberList& members();
};

} // namespace jsapi
