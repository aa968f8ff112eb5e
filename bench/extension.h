// An object of the framework whose members cost nothing themselves.
#pragma once

#include "vexlite/registrymap.h"

namespace bench {

/// The factory of "NovaExtension.Bench". Its class stays out of sight, as the library's classes do for the JS
/// core: a caller that knew it could call it directly.
///
/// Its members, in a table as long as an ordinary object's: "empty" answers nothing (script sees undefined),
/// "enveloped" answers {"success": true, "data": n}, and script calls "begin" and "end" around what is to be
/// timed.
KResult extensionFactory(std::int64_t creationContext, std::int64_t creationTarget);

/// The seconds between the last "begin" and "end".
double scriptSeconds();

} // namespace bench
