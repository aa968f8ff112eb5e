#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Profile": when the calling page's browser was made and loaded.
class KJsApiProfile final : public KJCExtendJsObj<KJsApiProfile> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Profile";
    static const MemberList& members();

    struct ProfileInfo;
    struct BrowserTraceId;
    struct BrowserTraceInfo;

    Answer<ProfileInfo> getProfileInfo(const IVEXBrowser& browser);
    Answer<BrowserTraceId> getBrowserTraceId(const IVEXBrowser& browser);
    Answer<BrowserTraceInfo> getBrowserTraceInfo(const IVEXBrowser& browser);
};

} // namespace jsapi
