// Signals: SIGINT, SIGTERM and SIGHUP end the event loop instead of the process; SIGUSR2 goes on with what is
// played.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <optional>

namespace novahost {

/// Ends the event loop with 128 + the number of a signal. One that follows before the event loop took the
/// first, or after it was ended, ends the process at once. Needs an application and hold(). [GUI thread]
class Signals {
public:
    /// From here on the three wait for an event loop; those that are ignored stay so. False when there is no
    /// way to: they end the process as before.
    static bool hold();

    Signals();

    /// What SIGINT does in place of ending the event loop; empty to end it again.
    void setInterrupt(std::function<void()> interrupt) { m_interrupt = std::move(interrupt); }

    /// What SIGUSR2 does, each time, from the event loop. Without one it ends the process.
    void setNext(std::function<void()> next);

    /// The exit code of the signal that ended the event loop, or `otherwise`: what the page said while its
    /// last call returned came too late.
    int exitCode(int otherwise) const { return m_exitCode.value_or(otherwise); }

private:
    void take();

    QSocketNotifier m_notifier;
    std::function<void()> m_interrupt;
    std::function<void()> m_next;
    std::optional<int> m_exitCode;
};

} // namespace novahost
