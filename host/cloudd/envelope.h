// The methods of "larkIpcCall": operations without messages of their own, called by name with a map of
// strings.
#pragma once

#include "host/cloudd/method.h"

namespace cloudd {

/// Replies at once or later. A failure has its word (Error::reason) as resultString.
void callMethod(
    Core& core, Session& session, const nova::lark::LarkIpcArg& request, const MethodReply& reply);

} // namespace cloudd
