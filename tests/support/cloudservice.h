// A cloud IPC service that keeps requests until the test replies to them.
#pragma once

#include "cloud/ipc/messagetypes.h"
#include "tests/support/suite.h"

#include <QCoreApplication>
#include <QPointer>
#include <deque>
#include <gtest/gtest.h>

namespace support {

struct CloudRequest {
    QString id;
    QString procedure;
    std::string type; ///< of the message
    std::shared_ptr<const void> message;
    QPointer<QObject> receiver;
    QByteArray slot;

    const LarkIpcArg& envelope() const { return *static_cast<const LarkIpcArg*>(message.get()); }

    /// Calls the slot by its name, as a service does.
    template <typename Result>
    bool reply(bool ok, const Result& result, const char* type = cloudTypeName<Result>,
        Qt::ConnectionType connection = Qt::DirectConnection) const
    {
        return receiver
            && QMetaObject::invokeMethod(receiver, slot.constData(), connection, Q_ARG(bool, ok),
                Q_ARG(QString, id), QGenericArgument(type, &result));
    }
    /// Replies with a result that is a state and strings.
    bool replyState(bool ok, std::int32_t state, std::map<std::string, std::string> values,
        Qt::ConnectionType connection = Qt::DirectConnection) const
    {
        LarkIpcResult result;
        result.state = state;
        result.resultMap = std::move(values);
        return reply(ok, result, "LarkIpcResult", connection);
    }
};

class FakeCloudService final : public IKCloudIpcService {
public:
    FakeCloudService()
    {
        application(); // the way to it
        cloudIpc = this;
    }
    ~FakeCloudService() { cloudIpc = nullptr; }
    FakeCloudService(const FakeCloudService&) = delete;
    FakeCloudService& operator=(const FakeCloudService&) = delete;

    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override
    {
        CloudRequest request { nextId(), procedure, argument.typeName, {}, receiver, replySlot.toLatin1() };
        keep<GetCloudFileCachePathArg, GetDefaultWorkspaceArg, LarkIpcArg, OpenVirtualCloudDiskArg,
            SaveToCloudDirArg, SyncFolderArg, UploadFilesToCloudArg, KIpcLoginInfo>(
            request, argument.message);
        if (onRequest)
            onRequest(request);
        if (request.id.isEmpty())
            return {};
        requests.push_back(request);
        return request.id;
    }

    CloudRequest take()
    {
        EXPECT_FALSE(requests.empty()) << "nothing was sent";
        CloudRequest request;
        if (!requests.empty()) {
            request = requests.front();
            requests.pop_front();
        }
        return request;
    }

    std::function<QString()> nextId = [this] { return QString::number(++m_ids); };
    std::function<void(CloudRequest&)> onRequest; ///< within the call; without an id the request is not taken
    std::deque<CloudRequest> requests;

private:
    template <typename... Messages> static void keep(CloudRequest& request, const void* message)
    {
        const auto copy = [&](auto* typed, const char* type) {
            if (request.type == type)
                request.message = std::make_shared<std::remove_pointer_t<decltype(typed)>>(*typed);
        };
        (copy(static_cast<const Messages*>(message), cloudTypeName<Messages>), ...);
    }

    int m_ids = 0;
};

} // namespace support
