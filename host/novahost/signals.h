// Signals: SIGINT, SIGTERM and SIGHUP end the event loop instead of the process; SIGUSR2 plays the next step.
#pragma once

#include "host/novahost/signalguard.h"

#include <QSocketNotifier>
#include <functional>
#include <optional>

namespace novahost {

/// Ends the event loop with 128 + the number of the signal. Where neither the event loop nor poll() hears a signal for some
/// seconds, and soon after a further one that comes when the event loop has ended, the process ends without either. Needs an
/// application, and hold() before. [GUI thread]
class Signals {
public:
    /// From here on the three signals wait for an event loop; ignored ones stay ignored. False on an error,
    /// after which they end the process as before.
    static bool hold();

    Signals();
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    /// Sets what SIGINT does instead of ending the event loop, and whether it also ends script that runs; empty restores
    /// that. `interrupt` may be called while script runs.
    void setInterrupt(std::function<void()> interrupt, bool endsScript = true);

    /// Whether the signal that is being heard is one that a process has sent to this one, and no key of the terminal, which
    /// sends it to all.
    bool isForThisProcess() const { return m_isForThisProcess; }

    /// Sets what SIGUSR2 does, from the event loop. Without it SIGUSR2 ends the process.
    void setNext(std::function<void()> next);

    /// Hears the signals that have come, for script that does not return to the event loop. Whether it is to end.
    bool poll();

    /// The exit code of the signal that ended the event loop, which overrides `otherwise`, the page's own;
    /// `otherwise` without a signal.
    int exitCode(int otherwise) const { return m_exitCode.value_or(otherwise); }
    bool hasEnded() const { return m_exitCode.has_value(); }

private:
    /// Hears one signal. False when there is none.
    bool take();

    QSocketNotifier m_notifier;
    SignalGuard m_guard;
    std::function<void()> m_interrupt;
    std::function<void()> m_next;
    bool m_endsScript = true;
    bool m_isScriptEnded = false;
    bool m_isForThisProcess = false;
    std::optional<int> m_exitCode;
};

} // namespace novahost
