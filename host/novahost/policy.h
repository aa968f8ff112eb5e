// The policy command: who may call, and which rule decides.
#pragma once

#include "host/novahost/options.h"

namespace novahost {

/// Returns an error for each name in the rules of the current profile that no object or member has.
QStringList findUnknownNames();

/// Prints the rules in force, or explains the decision about `options.origin` and `options.object`. Returns the exit code:
/// Failure when the call is denied.
int showPolicy(const Options& options);

} // namespace novahost
