#include "host/novahost/signalguard.h"

#include "host/profile/directories.h"

#include <QFile>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <unistd.h>

namespace novahost {

namespace {

using Clock = std::chrono::steady_clock;

/// Beyond what a slow machine needs to hear a signal.
constexpr std::chrono::seconds Patience(3);
/// And for what the end itself takes: whoever stops programs may send a signal twice.
constexpr std::chrono::seconds PatienceAtEnd(1);
constexpr int LookMs = 20;

} // namespace

SignalGuard::SignalGuard(int pipe)
    : m_pipe(pipe)
    , m_temporary(profile::isDataTemporary() ? QFile::encodeName(profile::dataDirectory()).toStdString() : "")
    , m_thread([this] { watch(); })
{
}

SignalGuard::~SignalGuard()
{
    m_thread.join();
}

void SignalGuard::watch()
{
    while (!m_isStopped) {
        if (const int number = next(-1); number > 0)
            wait(number);
    }
}

int SignalGuard::next(int milliseconds)
{
    pollfd waits { m_pipe, POLLIN, 0 };
    unsigned char number = 0;
    if (::poll(&waits, 1, milliseconds) <= 0 || ::read(m_pipe, &number, 1) != 1)
        return 0;
    m_isStopped = number == 0;
    m_came += m_isStopped ? 0 : 1;
    return number;
}

void SignalGuard::wait(int number)
{
    bool ends = number != SIGINT || m_isReported;
    const auto limit = Clock::now() + (m_isEnding ? PatienceAtEnd : Patience);
    while (m_heard < m_came && Clock::now() < limit) {
        if (const int further = next(LookMs); further > 0) {
            number = further;
            ends = true;
        }
        if (m_isStopped)
            return;
    }
    if (m_heard >= m_came) {
        m_isReported = false;
        return;
    }
    if (ends || m_isEnding)
        end(number);
    constexpr char Text[] = "novahost: waiting for a call that does not return; Ctrl-C again ends\n";
    const ssize_t written = ::write(STDERR_FILENO, Text, sizeof Text - 1);
    static_cast<void>(written);
    m_isReported = true;
}

void SignalGuard::end(int number)
{
    if (!m_temporary.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(m_temporary, ignored);
    }
    std::signal(number, SIG_DFL);
    raise(number);
    _exit(128 + number);
}

} // namespace novahost
