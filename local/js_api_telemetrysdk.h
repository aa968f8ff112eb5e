#pragma once

#include "framework/extensionobject.h"

class KDcInfoC;

namespace jsapi {

/// "NovaExtension.TelemetrySdk": posts events to the suite's data collection.
class KJsApiTelemetrySdk final : public KJCExtendJsObj<KJsApiTelemetrySdk> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.TelemetrySdk";
    static const MemberList& members();

    struct TelemetryEvent;

    Answer<void> postEvent(KDcInfoC& collection, const TelemetryEvent& event);
};

} // namespace jsapi
