// NovaExtension.Bench in a browser view: members and events whose own work is next to nothing.
#pragma once

#include "vexlite/registrymap.h"

namespace bench {

/// The factory of the object. Its members:
///   next()         returns a number, one more each time
///   put(text)      keeps a string and returns its length
///   get()          returns the string that is kept
///   later()        a promise that is resolved at the next turn of the event loop
///   pending()      a promise for settleAll()
///   settleAll()    resolves the pending promises, all at the next turn of the event loop
///   burst(count)   emits "bench.event" so often, all at the next turn of the event loop
///   heard()        ends the time that the first of them began
KResult webObjectFactory(std::int64_t creationContext, std::int64_t creationTarget);

} // namespace bench
