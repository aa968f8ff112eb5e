// Counting what a piece of code allocates: malloc is replaced for the whole program, so what Qt, the base
// library and operator new take is counted alike.
#pragma once

#include <cstddef>

namespace bench {

/// Allocations of this thread since it started. Growing a block counts as one.
std::size_t allocationsSoFar() noexcept;

/// How many allocations one call of `action` makes, over many calls. A fraction would be one that is not made
/// in every call.
template <typename Action> double allocationsOf(Action action)
{
    constexpr int calls = 1000;
    action();
    const std::size_t before = allocationsSoFar();
    for (int i = 0; i < calls; ++i)
        action();
    return static_cast<double>(allocationsSoFar() - before) / calls;
}

} // namespace bench
