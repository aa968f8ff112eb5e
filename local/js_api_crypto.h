#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Crypto": text encoding and digests.
class KJsApiCrypto final : public KJCExtendJsObj<KJsApiCrypto> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Crypto";
    static const MemberList& members();
};

} // namespace jsapi
