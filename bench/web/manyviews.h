#pragma once

namespace bench {

/// For a process of its own: opens many views ("bare", "library", or "touched": with all objects bound) and prints what
/// they take, for the benchmarks of that. Returns the exit code.
int openManyViews(const char* kind);

} // namespace bench
