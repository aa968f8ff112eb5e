// How much heap a piece of code holds at once. Like allocations.h it replaces malloc for the whole program,
// which takes one of the two: looking at every block's size would cost the programs that only count.
#pragma once

#include <cstddef>

namespace bench {

void watchLiveBytes() noexcept;

/// The most bytes that this thread held since watchLiveBytes, beyond those that it held then.
std::size_t peakOfLiveBytes() noexcept;

template <typename Action> double peakOf(Action action)
{
    watchLiveBytes();
    action();
    return static_cast<double>(peakOfLiveBytes());
}

} // namespace bench
