#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Log": writes records into the suite's log.
class KJsApiLog final : public KJCExtendJsObj<KJsApiLog> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Log";
    static const MemberList& members();

    struct LogRecord;

    Answer<void> logInfo(const LogRecord& record);
    Answer<void> logWarning(const LogRecord& record);
};

} // namespace jsapi
