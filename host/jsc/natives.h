// The native functions that prelude.js calls.
#pragma once

#include "host/jsc/api.h"

namespace engine::jsc {

/// Makes the object of native functions, for a context that was added to the engine. [GUI thread]
JSObjectRef makeNatives(JSGlobalContextRef ctx);

} // namespace engine::jsc
