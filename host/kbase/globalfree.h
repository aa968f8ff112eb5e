// How the stand-in's modules end blocks of mfxGlobalAlloc.
#pragma once

extern "C" {

/// Ends a block; null does nothing. [any thread]
void mfxGlobalFree(void* block);
}
