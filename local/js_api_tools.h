#pragma once

#include "framework/extensionobject.h"
#include "local/archives.h"

namespace jsapi {

/// "NovaExtension.Tools": pages, mail, processes and archives.
class KJsApiTools final : public KJCExtendJsObj<KJsApiTools> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Tools";
    static const MemberList& members();

    Answer<Promise<CompressResult>> compress(const JSContextEnv& page, const CompressOptions& options);
    Answer<Promise<DecompressResult>> decompress(const JSContextEnv& page, const DecompressOptions& options);
};

} // namespace jsapi
