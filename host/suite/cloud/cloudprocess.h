// The cloud process of a data directory, and the connection to it.
//
//     connect(&process, &CloudProcess::connected, ...);    // introduce this suite: sendAtOnce()
//     connect(&process, &CloudProcess::received, ...);     // read(); after the reply to that, setReady()
//     process.ensure();
//     process.send(frame);                                 // as soon as the process is ready
#pragma once

#include "host/suite/cloud/childprocess.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTimer>

namespace suite {

/// Connects to the process that runs in the directory already, and starts one where there is none. One that
/// dies is started again. [GUI thread]
class CloudProcess final : public QObject {
    Q_OBJECT

public:
    explicit CloudProcess(const QString& directory);

    /// Connects, unless that is done or under way already. Ends with ended() if there is no process.
    void ensure();
    bool isConnected() const { return m_socket.state() == QLocalSocket::ConnectedState; }
    /// Sends a frame as soon as the process is ready. False when the frame is empty or more than 64 MiB wait.
    bool send(const QByteArray& frame);
    /// Sends a frame to a connected process, ready or not.
    void sendAtOnce(const QByteArray& frame) { m_socket.write(frame); }
    /// The process has replied and can take requests. Does nothing when it is ready already.
    void setReady();
    /// Bytes that have come; empty when there are no more.
    QByteArray read();
    /// Closes the connection, as if the process had ended.
    void drop(const char* reason);
    /// Ends the process as a crash would (SIGKILL). False when none is connected.
    bool killProcess() { return m_peer.kill(); }
    /// The last call; no signal comes any more. The process gets what was sent to it, and ends when its work is
    /// done, or at once when its data are temporary.
    void release();

Q_SIGNALS:
    void connected();
    void received();
    /// The connection was lost before the process was ready; connected() or ended() follows.
    void interrupted();
    /// There is no process, or it is gone with what it was sent.
    void ended();

private:
    enum class State { Idle, Starting, Ready };

    bool start();
    void tryToConnect();
    void giveUp(const QString& reason);
    void onConnected();
    void onDisconnected();

    QString m_directory;
    QLocalSocket m_socket;
    State m_state = State::Idle;
    QTimer m_retry;
    QTimer m_deadline;         ///< for the process to get ready
    QElapsedTimer m_connected; ///< since the connection was made
    ChildProcess m_child;      ///< the one started last
    ProcessHandle m_peer;      ///< the one at the other end of the connection
    int m_starts = 0;          ///< since ensure()
    QByteArray m_unsent;       ///< frames for a process that is not ready yet
};

} // namespace suite
