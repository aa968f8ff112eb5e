#include "host/suite/cloud/childprocess.h"

#include <QFile>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// glibc 2.36 declares its functions as those of C++.
extern "C" {
#include <sys/pidfd.h>
}

namespace suite {

namespace {

constexpr qint64 MaxErrorBytes = 1000;

QByteArray readEnd(int file)
{
    const qint64 size = lseek(file, 0, SEEK_END);
    QByteArray end(static_cast<int>(qMax<qint64>(0, qMin(size, MaxErrorBytes))), '\0');
    const ssize_t count = pread(file, end.data(), static_cast<size_t>(end.size()), size - end.size());
    return end.left(static_cast<int>(qMax<ssize_t>(0, count)));
}

} // namespace

ProcessHandle::ProcessHandle(pid_t process)
    : m_fd(pidfd_open(process, 0))
{
}

ProcessHandle ProcessHandle::behind(int socket)
{
    ucred peer {};
    socklen_t size = sizeof(peer);
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.pid <= 0)
        return {};
    ProcessHandle handle(peer.pid);
    // A process closes its connections before its number is free for another one.
    pollfd closed { socket, POLLRDHUP, 0 };
    return poll(&closed, 1, 0) == 0 ? std::move(handle) : ProcessHandle();
}

ProcessHandle::~ProcessHandle()
{
    if (m_fd >= 0)
        close(m_fd);
}

bool ProcessHandle::kill() const
{
    return m_fd >= 0 && pidfd_send_signal(m_fd, SIGKILL, nullptr, 0) == 0;
}

bool ProcessHandle::hasEnded(int milliseconds) const
{
    pollfd ended { m_fd, POLLIN, 0 };
    return TEMP_FAILURE_RETRY(poll(&ended, 1, milliseconds)) > 0;
}

ChildProcess::~ChildProcess()
{
    if (m_errors >= 0)
        close(m_errors);
}

bool ChildProcess::start(const QString& program, const QStringList& arguments)
{
    m_end.clear();
    if (m_errors >= 0)
        close(m_errors);
    m_errors = memfd_create("errors", MFD_CLOEXEC);

    std::vector<QByteArray> words { QFile::encodeName(program) };
    for (const QString& argument : arguments)
        words.push_back(QFile::encodeName(argument));
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    // Whoever reads this process's output to its end must not wait for a process that outlives it.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, STDIN_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, m_errors >= 0 ? m_errors : STDIN_FILENO, STDERR_FILENO);
    // What the browser engine has open would outlive it, too.
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawn_file_actions_addchdir_np(&actions, "/");
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t process = 0;
    const int error =
        posix_spawn(&process, words.front().constData(), &actions, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        m_end = QString::fromLocal8Bit(std::strerror(error));
        return false;
    }
    m_handle = ProcessHandle(process);
    return true;
}

bool ChildProcess::isRunning()
{
    if (m_handle.isRunning())
        return true;
    siginfo_t ended {};
    if (m_handle.descriptor() >= 0
        && waitid(P_PIDFD, static_cast<id_t>(m_handle.descriptor()), &ended, WEXITED | WNOHANG) == 0
        && ended.si_pid != 0)
        m_end = (ended.si_code == CLD_EXITED ? QStringLiteral("exit code %1") : QStringLiteral("signal %1"))
                    .arg(ended.si_status);
    m_handle = ProcessHandle();
    return false;
}

QString ChildProcess::describeEnd() const
{
    const QList<QByteArray> lines = readEnd(m_errors).trimmed().split('\n');
    return lines.last().isEmpty() ? m_end : QString::fromLocal8Bit(lines.last());
}

} // namespace suite
