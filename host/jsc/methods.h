// Methods: the functions that script finds on the prototype of a native class.
//
// Each is a small function of script around the native one. Nearly every member answers the object
// {data, success: true}, and script makes that in a fraction of the time that native code needs for it: the
// native function answers only the data then and raises Signals::isEnveloped.
//
// Pages can not tamper with the functions and gain nothing by knowing the native ones, should they get hold
// of one: it asks for the same `this`, reads its arguments in the same way and answers what the method would.
#pragma once

#include "host/jsc/api.h"

#include <cstdint>
#include <vector>

namespace engine::jsc {

class PageState;

/// Memory of one page that the engine's script sees as an Int32Array: what one side writes just before it
/// returns, the other reads before anything else can run.
struct Signals {
    /// The answer is the data of {data, success: true}.
    std::int32_t isEnveloped = 0;
    /// How many keys Prelude::keys has answered. Written by script.
    std::int32_t keyCount = 0;
};

struct MethodSource {
    QString name;
    JSObjectRef native;
};

/// An object with one method for each source; `tag` is the file name in stack traces. Null when memory is
/// short. [GUI thread]
JSObjectRef makeMethods(PageState& page, const QString& tag, const std::vector<MethodSource>& sources);

} // namespace engine::jsc
