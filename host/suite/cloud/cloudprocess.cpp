#include "host/suite/cloud/cloudprocess.h"

#include "host/cloudwire/socketplace.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudlog.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <sys/stat.h>

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
constexpr int MaxFlushMs = 1000;

} // namespace

CloudProcess::CloudProcess(const QString& directory)
    : m_directory(directory)
{
    m_retry.setSingleShot(true);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { giveUp(QStringLiteral("it does not answer")); });
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
    if (!profile::isDataTemporary()) {
        // What has been sent is in a buffer until the event loop runs again, which it does not.
        const QDeadlineTimer deadline(MaxFlushMs);
        while (m_socket.bytesToWrite() > 0
            && m_socket.waitForBytesWritten(static_cast<int>(deadline.remainingTime()))) { }
        return;
    }
    // Whatever they are doing: they can be killed at any moment.
    for (const ProcessHandle* process : { &std::as_const(m_peer), &m_child.handle() }) {
        if (process->kill())
            process->waitForEnd(MaxKillMs);
    }
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

bool CloudProcess::start()
{
    const profile::Cloud settings = profile::current()->cloud;
    const QString program = settings.program.isEmpty()
        ? QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("novacloudd"))
        : profile::expandPath(settings.program);
    QStringList arguments { QStringLiteral("--directory"), m_directory, QStringLiteral("--upload-rate"),
        QString::number(settings.uploadBytesPerSecond) };
    for (const QString& place : settings.closedToUploads)
        arguments << QStringLiteral("--closed") << profile::expandPath(place);
    for (const QString& place : settings.openToUploads)
        arguments << QStringLiteral("--open") << profile::expandPath(place);
    ++m_starts;
    return m_child.start(program, arguments);
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
    if (!m_child.isRunning()) {
        if (m_starts == MaxStarts)
            return giveUp(QStringLiteral("it ends at once (%1)").arg(m_child.describeEnd()));
        if (!start())
            return giveUp(QStringLiteral("it can not be started (%1); name it in the profile, cloud.program")
                              .arg(m_child.describeEnd()));
    }
    m_retry.start(RetryMs);
}

void CloudProcess::giveUp(const QString& reason)
{
    const QString log = m_directory + QStringLiteral("/service.log");
    qCWarning(cloudLog, "there is no cloud process: %s%s", qPrintable(reason),
        QFile::exists(log) ? qPrintable(QStringLiteral("; see ") + log) : "");
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
    m_peer = ProcessHandle::behind(static_cast<int>(m_socket.socketDescriptor()));
    Q_EMIT connected();
}

void CloudProcess::onDisconnected()
{
    // The signal was queued: there may be another connection by now.
    if (m_socket.state() != QLocalSocket::UnconnectedState)
        return;
    m_peer = {};
    if (m_state == State::Idle)
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
