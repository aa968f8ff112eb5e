#include "host/novahost/signals.h"

#include <QCoreApplication>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr int ExitCodeOfSignals = 128;

struct Held {
    int number;
    bool ignored;
};

// Global: a signal handler has no context.
Held s_signals[] = { { SIGINT, false }, { SIGTERM, false }, { SIGHUP, false } };
int s_pipe[2] = { -1, -1 };

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const Held& signal : s_signals) {
        if (!signal.ignored)
            sigaction(signal.number, &action, nullptr);
    }
}

// Signal handlers: they run on any thread and may only use async-signal-safe functions.
void pass(int number)
{
    const int error = errno;
    const auto byte = static_cast<unsigned char>(number);
    const ssize_t written = write(s_pipe[1], &byte, 1);
    static_cast<void>(written);
    errno = error;
}

void note(int number)
{
    const int error = errno;
    pass(number);
    setHandler(SIG_DFL);
    errno = error;
}

} // namespace

bool Signals::hold()
{
    if (pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    for (Held& signal : s_signals) {
        struct sigaction before = {};
        sigaction(signal.number, nullptr, &before);
        signal.ignored = before.sa_handler == SIG_IGN;
    }
    setHandler(note);
    // A file at its size limit is an error like a full disk. Not ignored: programs that pages start would inherit that.
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &action, nullptr);
    return true;
}

Signals::Signals()
    : m_notifier(s_pipe[0], QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, [this] { take(); });
}

void Signals::setNext(std::function<void()> next)
{
    m_next = std::move(next);
    struct sigaction action = {};
    action.sa_handler = pass;
    action.sa_flags = SA_RESTART;
    // SIGUSR1 is used by the script engine.
    sigaction(SIGUSR2, &action, nullptr);
}

void Signals::take()
{
    unsigned char number = 0;
    if (read(s_pipe[0], &number, 1) != 1)
        return;
    if (number == SIGUSR2)
        return m_next();
    if (number != SIGINT || !m_interrupt) {
        m_exitCode = ExitCodeOfSignals + number;
        QCoreApplication::exit(*m_exitCode);
        return;
    }
    setHandler(note);
    m_interrupt();
}

} // namespace novahost
