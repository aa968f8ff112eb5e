// What the host does with the configuration centre beside the calls of krt/kcc.h.
#pragma once

namespace krt::kcc {

/// Writes what waits to be written and calls the completions that are due. For the host, before pages and
/// script go; the end of the application does it as well. False when the disk refused. [GUI thread]
bool shutdown();

} // namespace krt::kcc
