// The native functions that prelude.js calls.
#pragma once

#include "host/jsc/api.h"

namespace engine::jsc {

/// An object of them, for the prelude of a context whose page the engine knows. [GUI thread]
JSObjectRef makeNatives(JSGlobalContextRef ctx);

} // namespace engine::jsc
