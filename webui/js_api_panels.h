#pragma once

#include "framework/events.h"

namespace jsapi {

/// "NovaExtension.AiDocsChat": notifications between a page and the document chat panel.
class KJsApiAiDocsChat final : public KJCExtendJsObj<KJsApiAiDocsChat> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.AiDocsChat";
    static const MemberList& members();
};

/// "NovaExtension.WebDocsControl": informs the suite that a web document has been set up.
class KJObjWebDocsControl final : public KJCExtendJsEventObj<KJObjWebDocsControl> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.WebDocsControl";
    static const MemberList& members();
};

/// "NovaExtension.KContract": notifications between a page and the contract panel.
class KJObjContract final : public KJCExtendJsObj<KJObjContract> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.KContract";
    static const MemberList& members();
};

} // namespace jsapi
