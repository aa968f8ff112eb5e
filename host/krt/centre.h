// The configuration centre for the host, in addition to krt/kcc.h.
#pragma once

namespace krt::kcc {

/// Writes pending changes and calls pending completions. The host calls it before it closes pages; the end of
/// the application does the same. False when writing failed. [GUI thread]
bool shutdown();

} // namespace krt::kcc
