// What pages have in every browser beside the language, such as URL and AbortController: scripts that are compiled in and
// evaluated when a page first uses one of their functions.
#pragma once

#include "host/jsc/api.h"

#include <QString>

namespace engine::jsc {

/// Evaluates one of the scripts, such as "url". Returns a function that gets a global object to define things in and an
/// object of native functions, and returns what the script exports. Null, with `exception` set, when memory is short.
JSValueRef loadWebApi(JSContextRef ctx, const QString& name, JSValueRef* exception);

} // namespace engine::jsc
