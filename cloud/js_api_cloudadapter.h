#pragma once

#include "framework/events.h"

namespace jsapi {

/// "NovaExtension.CloudAdapter": generic requests to the cloud service, with its events.
class KJsApiCloudAdapter final : public KJCExtendJsEventObj<KJsApiCloudAdapter> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudAdapter";
    static const MemberList& members();
};

} // namespace jsapi
