// Processes that are known by a handle: a number may belong to another process by the time it is used.
//
//     ChildProcess child;
//     if (!child.start(program, arguments))
//         warn(child.describeEnd());
//     if (!child.isRunning())                 // at any later time
//         warn(child.describeEnd());
#pragma once

#include <QStringList>
#include <sys/types.h>
#include <utility>

namespace suite {

/// Owns a file descriptor that stands for a process, or none.
class ProcessHandle {
public:
    ProcessHandle() = default;
    /// `process` must be a child that nobody has waited for: any other may have ended already.
    explicit ProcessHandle(pid_t process);
    /// The process at the other end of a connected socket; none when it has closed the connection.
    static ProcessHandle behind(int socket);
    ProcessHandle(ProcessHandle&& other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    ProcessHandle& operator=(ProcessHandle&& other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~ProcessHandle();

    bool isRunning() const { return m_fd >= 0 && !hasEnded(0); }
    /// Ends the process (SIGKILL). False when there is none.
    bool kill() const;
    /// Waits until it has ended; false when that takes longer.
    bool waitForEnd(int milliseconds) const { return m_fd < 0 || hasEnded(milliseconds); }
    int descriptor() const { return m_fd; }

private:
    bool hasEnded(int milliseconds) const;

    int m_fd = -1;
};

/// A process that outlives this one, in a session of its own, without this one's input and output.
class ChildProcess {
public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// False when the program can not be executed. The process before it must have ended.
    bool start(const QString& program, const QStringList& arguments);
    bool isRunning();
    const ProcessHandle& handle() const { return m_handle; }
    /// Why the last one could not be started or has ended: what it wrote to its standard error last, or how it
    /// ended.
    QString describeEnd() const;

private:
    QString m_end;
    int m_errors = -1; ///< a file in memory, the process's standard error
    ProcessHandle m_handle;
};

} // namespace suite
