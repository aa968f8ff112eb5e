// The commands that run script: run and eval.
#pragma once

#include "host/novahost/suite.h"

namespace novahost {

/// Runs the file until its body has settled or it calls exit. Returns the exit code: 1 for an uncaught error.
int runScript(Suite& suite, const Options& options);
/// Prints the awaited result of the expression as JSON, undefined as null; a result without a JSON form is an
/// error. Returns the exit code.
int evalExpression(Suite& suite, const Options& options);

} // namespace novahost
