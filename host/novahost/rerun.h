// run --watch: runs a script again whenever it changes.
#pragma once

#include "host/novahost/options.h"

namespace novahost {

/// Starts this program again with `arguments`, and anew each time that a watched file has changed: the script, the profile,
/// and with the browser engine what lies in the script's folder, from which it may import. Returns the exit code when a
/// signal ends it; SIGINT does so between two runs, and within a run when that has ended by it. Signals::hold() comes before.
int rerunScript(const Options& options, const QStringList& arguments);

} // namespace novahost
