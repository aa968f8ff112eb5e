#include "bench/livebytes.h"

#include <algorithm>
#include <malloc.h>

// glibc's own entries, behind the names that are replaced here.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}

namespace {

struct LiveBytes {
    bool watched;
    std::ptrdiff_t now, peak;

    void* add(void* block)
    {
        if (watched) [[unlikely]] {
            now += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
            peak = std::max(peak, now);
        }
        return block;
    }

    void remove(void* block)
    {
        if (watched) [[unlikely]]
            now -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    }
};

constinit thread_local LiveBytes live {};

} // namespace

void bench::watchLiveBytes() noexcept
{
    live = { true, 0, 0 };
}

std::size_t bench::peakOfLiveBytes() noexcept
{
    live.watched = false;
    return static_cast<std::size_t>(live.peak);
}

extern "C" {

void* malloc(std::size_t size)
{
    return live.add(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size)
{
    return live.add(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size)
{
    live.remove(block);
    return live.add(__libc_realloc(block, size));
}

void free(void* block)
{
    live.remove(block);
    __libc_free(block);
}
}
