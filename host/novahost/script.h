// The commands that run script: run and eval.
#pragma once

#include "host/novahost/signals.h"
#include "host/novahost/suite.h"
#include "host/suite/play.h"

namespace novahost {

/// What run and eval have of the process. All live longer than the page.
struct ScriptRun {
    Suite& suite;
    const Options& options;
    Signals& signals;
    const suite::Play& play; ///< of the command line
};

/// Runs a script file until it has ended and nothing is pending, or until it calls exit(). Returns the exit code.
int runScript(const ScriptRun& run);
/// Prints the awaited result of an expression as JSON, and goes on like runScript(). Returns the exit code.
int evalExpression(const ScriptRun& run);

} // namespace novahost
