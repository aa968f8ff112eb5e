#include "host/novahost/signals.h"

#include <QCoreApplication>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr int ExitCodeOfSignals = 128;
constexpr int SentByProcess = 0x80; ///< added to the number of a signal in the pipe

// Global: a signal handler has no context.
int s_pipe[2] = { -1, -1 };
int s_guardPipe[2] = { -1, -1 };

void sendByte(const int (&pipe)[2], int number)
{
    const auto byte = static_cast<unsigned char>(number);
    const ssize_t written = ::write(pipe[1], &byte, 1);
    static_cast<void>(written);
}

// Signal handlers: they run on any thread and may only use async-signal-safe functions.
void pass(int number)
{
    const int error = errno;
    sendByte(s_pipe, number);
    errno = error;
}

void passToBoth(int number, siginfo_t* info, void*)
{
    const int error = errno;
    sendByte(s_pipe, info->si_code <= 0 ? number | SentByProcess : number);
    sendByte(s_guardPipe, number);
    errno = error;
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

bool Signals::hold()
{
    if (pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0 || pipe2(s_guardPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    struct sigaction action = {};
    action.sa_sigaction = passToBoth;
    action.sa_flags = SA_RESTART | SA_SIGINFO;
    for (const int number : { SIGINT, SIGTERM, SIGHUP }) {
        struct sigaction before = {};
        sigaction(number, nullptr, &before);
        if (before.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
    // A file at its size limit is an error like a full disk. Not ignored: programs that pages start would inherit that.
    setHandler(SIGXFSZ, [](int) {});
    return true;
}

Signals::Signals()
    : m_notifier(s_pipe[0], QSocketNotifier::Read)
    , m_guard(s_guardPipe[0])
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, [this] { take(); });
}

Signals::~Signals()
{
    sendByte(s_guardPipe, 0);
}

void Signals::setInterrupt(std::function<void()> interrupt, bool endsScript)
{
    m_interrupt = std::move(interrupt);
    m_endsScript = endsScript;
}

void Signals::setNext(std::function<void()> next)
{
    m_next = std::move(next);
    setHandler(SIGUSR2, pass); // SIGUSR1 is used by the script engine
}

bool Signals::take()
{
    unsigned char number = 0;
    if (read(s_pipe[0], &number, 1) != 1)
        return false;
    m_isForThisProcess = (number & SentByProcess) != 0;
    number &= static_cast<unsigned char>(~SentByProcess);
    if (number == SIGUSR2) {
        QMetaObject::invokeMethod(
            &m_notifier, [this] { m_next(); }, Qt::QueuedConnection);
        return true;
    }
    if (number == SIGINT && m_interrupt) {
        m_isScriptEnded = m_endsScript;
        const auto interrupt = m_interrupt; // it may set another one
        interrupt();
        m_guard.hear();
        return true;
    }
    if (!m_exitCode)
        m_exitCode = ExitCodeOfSignals + number;
    m_guard.hear();
    m_guard.expectEnd();
    QCoreApplication::exit(*m_exitCode);
    return true;
}

bool Signals::poll()
{
    m_isScriptEnded = false;
    while (take()) { }
    return m_isScriptEnded || m_exitCode;
}

} // namespace novahost
