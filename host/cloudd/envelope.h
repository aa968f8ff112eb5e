// The methods of "larkIpcCall": operations without messages of their own, called by name with texts.
#pragma once

#include "host/cloudd/core.h"

#include "cloud/schema/lark_types.h"

namespace cloudd {

/// Throws Refusal.
nova::lark::LarkIpcResult callMethod(Core& core, Session& session, const nova::lark::LarkIpcArg& request);

} // namespace cloudd
