// Says where errors of syntax are.
#pragma once

#include "host/jsc/api.h"

namespace engine::jsc {

/// Gives the error of a script that has not compiled, or that has thrown, its column: the engine says the line only. Where
/// the end of `source` is what is wrong, and `script` has a wrapper around it, the error says that. Does nothing with what is
/// no syntax error of the whole script.
void placeSyntaxError(JSContextRef ctx, JSValueRef error, const QString& script, const QString& source);

} // namespace engine::jsc
