// Says why and where a text is no script.
#pragma once

#include "host/jsc/api.h"

namespace engine::jsc {

/// Gives the error of a script that has not compiled, or that has thrown, its place within `source`, the part of `script` that
/// the user has written, and the reason: the engine says the line only, and of the end of `source` what the wrapper around
/// it makes of it. Does nothing with what is no syntax error of the whole script.
void placeSyntaxError(JSContextRef ctx, JSValueRef error, const QString& script, const QString& source);

} // namespace engine::jsc
