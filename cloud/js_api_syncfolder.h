#pragma once

#include "framework/events.h"

namespace jsapi {

/// "NovaExtension.SyncFolder": folders that are kept in step with the cloud.
class KJsApiSyncFolder final : public KJCExtendJsEventObj<KJsApiSyncFolder> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.SyncFolder";
    static const MemberList& members();
};

} // namespace jsapi
