// novahost open: a window with a page.
#pragma once

#include "host/novahost/suite.h"

namespace novahost {

/// Shows the page until its window is closed, or writes a picture of it. Returns the exit code.
int openInWindow(Suite& suite, const Options& options);

} // namespace novahost
