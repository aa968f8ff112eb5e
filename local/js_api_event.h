#pragma once

#include "framework/events.h"

namespace jsapi {

/// "NovaExtension.Event": a channel between pages, with nothing but the four generic event members.
class KJsApiEvent final : public KJCExtendJsEventObj<KJsApiEvent> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Event";
    static const MemberList& members();
};

} // namespace jsapi
