// The repl command: reads expressions, prints their answers.
#pragma once

#include "host/novahost/signals.h"
#include "host/novahost/suite.h"

namespace novahost {

/// Reads until the end of input or exit(). On a terminal with history (kept in the data directory) and
/// completion of objects and members with their signatures, and SIGINT drops the line or the answer that is
/// awaited; otherwise a line at a time. ".help" documents objects and members. Returns the exit code.
int runRepl(Suite& suite, const Options& options, Signals& signals);

} // namespace novahost
