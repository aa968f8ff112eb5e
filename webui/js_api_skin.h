#pragma once

#include "framework/events.h"

namespace jsapi {

/// "NovaExtension.Skin": the visual theme, its values and its changes.
class KJsApiSkin final : public KJCExtendJsEventObj<KJsApiSkin> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Skin";
    static const MemberList& members();
};

} // namespace jsapi
