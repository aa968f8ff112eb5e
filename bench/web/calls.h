#pragma once

namespace bench {

/// Closes the pages that calls are measured in. Before the application ends.
void closePages();

} // namespace bench
