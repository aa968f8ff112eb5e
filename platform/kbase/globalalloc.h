// The allocator whose blocks may change hands between the suite's modules.
#pragma once

#include <cstddef>

extern "C" {

/// A block of `bytes` bytes with any content, or null when memory is short. The owner, whoever that is by
/// then, ends it as the suite's modules do. Zero bytes are a block, too. [any thread]
void* mfxGlobalAlloc(std::size_t bytes);
}
