// The methods of "larkIpcCall": operations without messages of their own, called by name with a map of
// strings.
#pragma once

#include "host/cloudd/core.h"

#include "cloud/schema/lark_types.h"

namespace cloudd {

/// Throws Error.
nova::lark::LarkIpcResult callMethod(Core& core, Session& session, const nova::lark::LarkIpcArg& request);

} // namespace cloudd
