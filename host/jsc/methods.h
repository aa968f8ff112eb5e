// Methods: the functions on the prototype of a native class.
//
// Each is a small script function around the native one. Nearly every member returns {data, success: true},
// which script can make in a fraction of the time that native code needs; the native function then returns
// only the data and sets Signals::isEnveloped.
//
// Pages can not tamper with these functions. A page that gets hold of a native one gains nothing: it requires
// the same `this`, reads its arguments in the same way, and returns the same data.
#pragma once

#include "host/jsc/api.h"

#include <cstdint>
#include <vector>

namespace engine::jsc {

class PageState;

/// Memory of one page that is an Int32Array for the engine's own script. One side writes right before it
/// returns, and the other reads before other code can run.
struct Signals {
    /// The result is the data of {data, success: true}.
    std::int32_t isEnveloped = 0;
    /// The number of keys that Prelude::keys returned, or isView. Written by script.
    std::int32_t keyCount = 0;
    /// It returned none: the object is a typed array or a DataView.
    static constexpr std::int32_t isView = -1;
};

struct MethodSource {
    QString name;
    JSObjectRef native;
};

/// Makes an object with a method for each source; `tag` is the file name in stack traces. Null when memory is
/// short. [GUI thread]
JSObjectRef makeMethods(PageState& page, const QString& tag, const std::vector<MethodSource>& sources);

} // namespace engine::jsc
