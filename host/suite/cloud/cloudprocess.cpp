#include "host/suite/cloud/cloudprocess.h"

#include "host/cloudwire/socketplace.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudlog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <csignal>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>

namespace suite {

namespace {

constexpr qint64 MaxUnsentBytes = 64 << 20;
constexpr qint64 ReadBytes = 64 << 10;

// A process usually listens after some 100 ms.
constexpr int RetryMs = 20;
constexpr int MaxStarts = 3;
constexpr int GiveUpAfterMs = 15'000;
/// A process that dies sooner is not started again before it is needed.
constexpr int MinLifetimeMs = 1000;
constexpr int MaxKillMs = 3000;

pid_t processBehind(const QLocalSocket& socket)
{
    ucred peer {};
    socklen_t size = sizeof(peer);
    const bool known =
        getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return known ? peer.pid : 0;
}

/// The program that a process runs; empty when it has ended, though nobody may have waited for it.
QString findProgram(qint64 process)
{
    return QFileInfo(QStringLiteral("/proc/%1/exe").arg(process)).symLinkTarget();
}

} // namespace

CloudProcess::CloudProcess(const QString& directory)
    : m_directory(directory)
{
    m_retry.setSingleShot(true);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        giveUp(QStringLiteral("it does not answer; service.log in %1 may say why").arg(m_directory));
    });
    connect(&m_retry, &QTimer::timeout, this, &CloudProcess::tryToConnect);
    connect(&m_socket, &QLocalSocket::connected, this, &CloudProcess::onConnected);
    connect(&m_socket, &QLocalSocket::readyRead, this, &CloudProcess::received);
    // A write that fails emits it from within send().
    connect(
        &m_socket, &QLocalSocket::disconnected, this, &CloudProcess::onDisconnected, Qt::QueuedConnection);
}

void CloudProcess::release()
{
    m_retry.stop();
    m_deadline.stop();
    m_socket.disconnect(this);
    if (!profile::isDataTemporary())
        return;
    // Whatever it is doing: it can be killed at any moment.
    if (isConnected())
        m_process = processBehind(m_socket);
    else if (!isRunning())
        m_process = 0;
    if (m_process > 0)
        kill(m_process, SIGKILL);
    for (int waited = 0; m_process > 0 && waited < MaxKillMs && !findProgram(m_process).isEmpty(); ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void CloudProcess::ensure()
{
    if (m_state != State::Idle)
        return;
    m_state = State::Starting;
    m_starts = 0;
    m_deadline.start(GiveUpAfterMs);
    m_retry.start(0);
}

bool CloudProcess::send(const QByteArray& frame)
{
    if (frame.isEmpty() || m_unsent.size() + m_socket.bytesToWrite() + frame.size() > MaxUnsentBytes)
        return false;
    if (m_state != State::Ready)
        m_unsent.append(frame);
    else if (isConnected())
        m_socket.write(frame);
    // Otherwise ended() comes in a moment, for this frame and all others.
    return true;
}

void CloudProcess::setReady()
{
    if (m_state != State::Starting)
        return;
    m_state = State::Ready;
    m_deadline.stop();
    m_socket.write(std::exchange(m_unsent, {}));
}

QByteArray CloudProcess::read()
{
    return m_socket.bytesAvailable() > 0 ? m_socket.read(ReadBytes) : QByteArray();
}

void CloudProcess::drop(const char* reason)
{
    qCWarning(cloudLog, "the cloud process is not understood: %s", reason);
    m_socket.abort();
}

bool CloudProcess::killProcess()
{
    const pid_t process = isConnected() ? processBehind(m_socket) : 0;
    return process > 0 && kill(process, SIGKILL) == 0;
}

bool CloudProcess::isRunning() const
{
    return m_process > 0 && findProgram(m_process) == m_program;
}

bool CloudProcess::start()
{
    const profile::Cloud settings = profile::current()->cloud;
    QProcess process;
    process.setProgram(settings.program.isEmpty()
            ? QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("novacloudd"))
            : profile::expandPath(settings.program));
    process.setArguments({ QStringLiteral("--directory"), m_directory, QStringLiteral("--upload-rate"),
        QString::number(settings.uploadBytesPerSecond) });
    process.setWorkingDirectory(QStringLiteral("/"));
    // It outlives this process, and whoever reads this process's output to its end must not wait for it.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    ++m_starts;
    qint64 id = 0;
    if (!process.startDetached(&id))
        return false;
    m_process = static_cast<pid_t>(id);
    m_program = findProgram(m_process);
    return true;
}

void CloudProcess::tryToConnect()
{
    if (m_state != State::Starting || isConnected())
        return;
    QDir().mkpath(QFileInfo(m_directory).path());
    mkdir(QFile::encodeName(m_directory).constData(), S_IRWXU);
    // Opened each time: the directory may have been replaced.
    const cloudwire::SocketPlace place(m_directory);
    m_socket.connectToServer(place.name());
    if (isConnected())
        return;
    m_socket.abort();
    if (!isRunning()) {
        if (m_starts == MaxStarts)
            return giveUp(QStringLiteral("it ends at once; service.log in %1 may say why").arg(m_directory));
        if (!start())
            return giveUp(
                QStringLiteral("novacloudd can not be started; name it in the profile, cloud.program"));
    }
    m_retry.start(RetryMs);
}

void CloudProcess::giveUp(const QString& reason)
{
    qCWarning(cloudLog, "there is no cloud process: %s", qPrintable(reason));
    m_state = State::Idle;
    m_retry.stop();
    m_deadline.stop();
    m_socket.abort();
    m_unsent.clear();
    Q_EMIT ended();
}

void CloudProcess::onConnected()
{
    m_connected.start();
    Q_EMIT connected();
}

void CloudProcess::onDisconnected()
{
    // The signal was queued: there may be another connection by now.
    if (m_socket.state() != QLocalSocket::UnconnectedState || m_state == State::Idle)
        return;
    if (m_state == State::Starting) {
        // This process was about to end when it was found.
        Q_EMIT interrupted();
        m_retry.start(RetryMs);
        return;
    }
    qCWarning(cloudLog, "the cloud process has ended");
    m_state = State::Idle;
    Q_EMIT ended();
    if (m_connected.elapsed() > MinLifetimeMs)
        ensure();
}

} // namespace suite
