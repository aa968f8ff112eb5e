#include "bench/allocations.h"

#include <cerrno>

// glibc's own entries, behind the names that are replaced here.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

constinit thread_local std::size_t counted = 0;

}

std::size_t bench::allocationsSoFar() noexcept
{
    return counted;
}

extern "C" {

void* malloc(std::size_t size)
{
    ++counted;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    ++counted;
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    ++counted;
    return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size)
{
    ++counted;
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** out, std::size_t alignment, std::size_t size)
{
    void* block = memalign(alignment, size);
    if (!block)
        return ENOMEM;
    *out = block;
    return 0;
}

void free(void* block)
{
    __libc_free(block);
}
}
