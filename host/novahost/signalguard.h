// SignalGuard: ends the process where nobody hears the signals that should end it, as in a call that does not return.
#pragma once

#include <QString>
#include <atomic>
#include <thread>

namespace novahost {

/// A thread of its own. It leaves nothing behind but what is kept anyhow.
class SignalGuard {
public:
    /// `pipe` has a byte for each signal, its number; one of 0 ends the guard.
    explicit SignalGuard(int pipe);
    ~SignalGuard();
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

    /// One more signal has been heard. [GUI thread]
    void hear() { ++m_heard; }
    /// The process is about to end: the next signal ends it soon.
    void expectEnd() { m_isEnding = true; }

private:
    void watch();
    /// The next signal, or 0 when none has come by then; less than 0 milliseconds: no limit.
    int next(int milliseconds);
    /// Waits until all signals have been heard. Ends the process when that takes too long.
    void wait(int number);
    [[noreturn]] void end(int number);

    const int m_pipe;
    const std::string m_temporary; ///< the directory that the process would remove at its end; empty: none
    std::atomic<int> m_heard = 0;
    std::atomic<bool> m_isEnding = false;
    int m_came = 0;
    bool m_isStopped = false;
    bool m_isReported = false;
    std::thread m_thread;
};

} // namespace novahost
