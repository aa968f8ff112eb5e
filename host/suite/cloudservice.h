// The suite's cloud IPC service: requests go to the cloud process, which it starts, over a local socket.
#pragma once

#include "host/cloudwire/frames.h"
#include "suite/kcloudipc.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QMetaMethod>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <sys/types.h>
#include <unordered_map>

namespace suite {

/// Follows who is signed in, and tells the process. Requests made while the process is not there wait until
/// it has been started; those that it has got when it dies fail, and it is started again. [GUI thread]
class CloudService final : public QObject, public IKCloudIpcService {
    Q_OBJECT

public:
    /// The service, switched on or not. Needs the application; made again after shutDown().
    static CloudService& instance();
    /// Lets every request that waits fail, and leaves the process to itself, which ends when its work is
    /// done; one whose data directory goes with this process is ended. Does nothing when called again.
    static void shutDown();

    /// Refuses what the process could not be asked or the receiver could not be told, a request beyond 4 MiB,
    /// more than 100,000 requests or 64 MiB of them at once.
    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override;

    /// Has the process started if it is not there, so that it can tell what happens.
    void ensureProcess();
    /// Ends the process as a crash would (SIGKILL). False when none is connected.
    bool killProcess();

private:
    /// A request whose reply is to come.
    struct Request {
        QString id;
        QPointer<QObject> receiver;
        QMetaMethod slot;
        const cloudwire::MessageType* result = nullptr;
        void (CloudService::*deliver)(const Request&, bool ok, const void* result) = nullptr;
    };
    enum class State { Idle, Starting, Connected };

    CloudService();
    void end();

    QString post(const QString& procedure, const void* argument, Request request);
    std::int32_t nextNumber();
    bool send(const QByteArray& frame);
    void tellUser();
    void deliverResult(const Request& request, bool ok, const void* result);
    void deliverRpcResponse(const Request& request, bool ok, const void* result);
    void userTold(const Request& request, bool ok, const void* result);

    bool isProcessRunning() const;
    bool startProcess();
    void tryToConnect();
    void giveUp(const QString& reason);
    void onConnected();
    void onDisconnected();
    void failAll();

    void read();
    bool take(std::string_view frame);
    void takeNotice(const cloudwire::Head& head, std::string_view message);
    void later(std::function<void()> action);
    void runNext();

    QString m_directory;
    QLocalSocket m_socket;
    State m_state = State::Idle;
    QTimer m_retry;
    QTimer m_patience;         ///< while the process is waited for
    QElapsedTimer m_connected; ///< since it has been there
    pid_t m_process = 0;       ///< that was started last
    QString m_program;         ///< which it runs
    int m_starts = 0;          ///< of processes, while one is waited for
    cloudwire::FrameCodec m_codec;
    cloudwire::FrameReader m_reader;
    QByteArray m_unsent; ///< frames for a process that is not there yet
    std::unordered_map<std::int32_t, Request> m_requests;
    std::int32_t m_number = 0;
    bool m_ending = false;
    std::deque<std::function<void()>> m_later; ///< what calls others, one in a turn of the event loop
};

} // namespace suite
