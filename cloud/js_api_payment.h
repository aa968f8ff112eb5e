#pragma once

#include "cloud/purchase.h"
#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Payment": opens the suite's purchase page.
class KJsApiPayment final : public KJCExtendJsObj<KJsApiPayment> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Payment";
    static const MemberList& members();

    struct OpenOptions;

    Answer<Promise<PurchaseReport>> open(const JSContextEnv& page, const OpenOptions& options);
};

} // namespace jsapi
