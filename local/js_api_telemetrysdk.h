#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.TelemetrySdk": posts events to the suite's data collection.
class KJsApiTelemetrySdk final : public KJCExtendJsObj<KJsApiTelemetrySdk> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.TelemetrySdk";
    static const MemberList& members();

    /// {eventName: string, pb?: 1 | 100 | 1000, postContent: {field: string}} -> undefined. The event is sent
    /// one time in `pb` (default 1). Failures: 3 "kdcinfo error" (no data collection), 1 "empty event name",
    /// 1 "wrong parameters." (pb, or postContent is no object), 1 "empty post content".
    Reply postEvent(Call& call);
};
