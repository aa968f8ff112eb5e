// The members command: what each object publishes to script.
#pragma once

#include "host/novahost/suite.h"

namespace novahost {

/// Prints the published tables, of all objects or of `options.object`. Returns the exit code.
int listMembers(Suite& suite, const Options& options);

} // namespace novahost
