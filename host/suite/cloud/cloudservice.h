// The suite's cloud IPC service: requests to the cloud process, and their replies.
#pragma once

#include "host/cloudwire/frames.h"
#include "host/suite/cloud/cloudprocess.h"
#include "suite/kcloudipc.h"

#include <QMetaMethod>
#include <QPointer>
#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>

namespace suite {

/// Reports to the process who is signed in, whenever that changes. Requests made while the process is not
/// ready wait for it; those that it has received when it dies fail. [GUI thread]
class CloudService final : public QObject, public IKCloudIpcService {
    Q_OBJECT

public:
    /// The service, switched on or not. Needs the application; made again after shutDown().
    static CloudService& instance();
    /// Every request under way fails. The process ends when its work is done, or at once when its data are
    /// temporary. Does nothing when called again.
    static void shutDown();

    /// Refuses an argument that no procedure takes, a receiver without the slot, a request beyond 4 MiB, and
    /// more than 100,000 requests or 64 MiB of them at once; and a report of who is signed in, which only the suite
    /// makes.
    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override;

    /// Sends the bytes of a request of the cloud SDK (kcloudsdk.h); refuses those that are none.
    QString invokeSdk(const QByteArray& request, QObject* receiver, const QString& replySlot);

    /// Starts the process if there is none, so that its notices come.
    void ensureProcess();
    /// Ends the process as a crash would (SIGKILL). False when none is connected.
    bool killProcess() { return m_process.killProcess(); }

private:
    /// A request whose reply is to come.
    struct Request {
        QString id;
        QPointer<QObject> receiver;
        QMetaMethod slot;
        const cloudwire::MessageType* result = nullptr;
        void (CloudService::*deliver)(const Request&, bool ok, const void* result) = nullptr;
    };

    CloudService();
    void end();

    QString post(const QString& procedure, const void* argument, Request request);
    std::int32_t nextNumber();
    void reportUser();
    void onUserReported(const Request& request, bool ok, const void* result);
    void deliverResult(const Request& request, bool ok, const void* result);
    void deliverRpcResponse(const Request& request, bool ok, const void* result);

    void deliverSdkReply(const Request& request, bool ok, const void* result);

    void introduce();
    void dropIntroductions();
    void failAll();
    void failLater(Request request);
    void read();
    bool take(std::string_view frame);
    void takeNotice(const cloudwire::Head& head, std::string_view message);
    void runLater(std::function<void()> action);
    void runNext();

    CloudProcess m_process;
    cloudwire::FrameCodec m_codec;
    cloudwire::FrameReader m_reader;
    std::unordered_map<std::int32_t, Request> m_requests;
    std::int32_t m_number = 0;
    bool m_ending = false;
    std::deque<std::function<void()>> m_actions; ///< calls into receivers, one in a turn of the event loop
};

} // namespace suite
