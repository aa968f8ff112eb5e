// The time between what native code begins and what a page says when it has noticed.
#pragma once

#include <chrono>
#include <utility>

namespace bench {

/// Of the process. [GUI thread]
class Stopwatch {
public:
    using Clock = std::chrono::steady_clock;

    static void begin() { s_begun = Clock::now(); }
    static void end() { s_seconds += std::chrono::duration<double>(Clock::now() - s_begun).count(); }
    /// The sum since the last call of this.
    static double takeSeconds() { return std::exchange(s_seconds, 0); }

private:
    inline static Clock::time_point s_begun;
    inline static double s_seconds = 0;
};

} // namespace bench
