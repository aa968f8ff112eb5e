// The configuration centre for the host, in addition to krt/kcc.h.
#pragma once

namespace krt::kcc {

/// Writes pending changes and calls pending completions. The host calls it before it closes pages; the end of
/// the application does the same. False when writing failed; the changes stay pending. [GUI thread]
bool shutdown();
/// How many changes are not written yet. [GUI thread]
int pendingChanges();

} // namespace krt::kcc
