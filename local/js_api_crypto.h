#pragma once

#include "framework/bytes.h"
#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Crypto": text encoding and digests.
class KJsApiCrypto final : public KJCExtendJsObj<KJsApiCrypto> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Crypto";
    static const MemberList& members();

    Answer<QString> c64Encode(const Demanded<TextOrBytes>& content);
    Answer<QString> md5Data(const Demanded<TextOrBytes>& content);
};

} // namespace jsapi
