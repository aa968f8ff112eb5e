#include "kbase/globalalloc.h"

#include "host/kbase/globalfree.h"

#include <algorithm>
#include <cstdlib>

void* mfxGlobalAlloc(std::size_t bytes)
{
    return std::malloc(std::max<std::size_t>(bytes, 1));
}

void mfxGlobalFree(void* block)
{
    std::free(block);
}
