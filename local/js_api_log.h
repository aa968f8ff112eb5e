#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.Log": writes records into the suite's log.
class KJsApiLog final : public KJCExtendJsObj<KJsApiLog> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Log";
    static const MemberList& members();

    // Each takes {moduleName: string, logStr: string}, neither empty, and answers undefined.
    // Failure: 1 "missing required parameters.".
    Reply logInfo(Call& call);
    Reply logWarning(Call& call);
};
