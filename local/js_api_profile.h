#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.Profile": when the calling page's browser was made and loaded.
///
/// Times are 64-bit milliseconds since 1970 (UTC), 0 for what has not happened; durations are never negative.
/// Failure: 1 "Browser is not in browser group.".
class KJsApiProfile final : public KJCExtendJsObj<KJsApiProfile> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Profile";
    static const MemberList& members();

    /// -> {c_l, c_cb: load and creation duration; c_l_ts, c_cb_ts: their starts; c_lf_ts, c_cbf_ts: their
    /// ends}.
    Reply getProfileInfo(Call& call);
    /// -> {pid: integer, appid: string, browserid: string}.
    Reply getBrowserTraceId(Call& call);
    /// -> both of the above with {sessionid, c_l_rd, c_l_rd_ts: until the document was ready; c_cb_ld,
    /// c_cb_ld_ts: between the marks of the browser's group}.
    Reply getBrowserTraceInfo(Call& call);
};
