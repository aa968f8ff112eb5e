// The allocator whose blocks may change hands between the suite's modules.
#pragma once

#include <cstddef>

extern "C" {

/// A block of `bytes` bytes with any content, or null when memory is short. The owner, whoever that is by
/// then, ends it with mfxGlobalFree. Zero bytes are a block, too. [any thread]
void* mfxGlobalAlloc(std::size_t bytes);

/// Ends a block of mfxGlobalAlloc; null does nothing. [any thread]
void mfxGlobalFree(void* block);
}
