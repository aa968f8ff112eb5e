// Signals: SIGINT, SIGTERM and SIGHUP end the event loop instead of the process; SIGUSR2 plays the next step.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <optional>

namespace novahost {

/// Ends the event loop with 128 + the number of the signal. A second signal, before the event loop handled
/// the first or after it was ended, ends the process at once. Needs an application, and hold() before. [GUI
/// thread]
class Signals {
public:
    /// From here on the three signals wait for an event loop; ignored ones stay ignored. False on an error,
    /// after which they end the process as before.
    static bool hold();

    Signals();

    /// Sets what SIGINT does instead of ending the event loop; empty restores that.
    void setInterrupt(std::function<void()> interrupt) { m_interrupt = std::move(interrupt); }

    /// Sets what SIGUSR2 does, from the event loop. Without it SIGUSR2 ends the process.
    void setNext(std::function<void()> next);

    /// The exit code of the signal that ended the event loop, which overrides `otherwise`, the page's own;
    /// `otherwise` without a signal.
    int exitCode(int otherwise) const { return m_exitCode.value_or(otherwise); }

private:
    void take();

    QSocketNotifier m_notifier;
    std::function<void()> m_interrupt;
    std::function<void()> m_next;
    std::optional<int> m_exitCode;
};

} // namespace novahost
