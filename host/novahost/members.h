// The members command: what each object publishes to script.
#pragma once

#include "host/novahost/suite.h"

namespace novahost {

/// Prints the published tables, of all objects or of those that `options.object` names: in full, without
/// NovaExtension, or by the last part; or the documentation of a member. Returns the exit code, Failure when
/// what is published differs from its description.
int listMembers(Suite& suite, const Options& options);

} // namespace novahost
