// One upload that runs in the cloud-document service.
#pragma once

#include "cloud/ipc/larkipcwrapper.h"
#include "framework/fields.h"

#include <QTimer>
#include <QVariantMap>

namespace jsapi {

/// How an upload stands, all as the service reports it. What it does not report is left out.
struct UploadState {
    std::optional<QString> taskId;
    std::optional<QString> status;
    std::optional<QString> data;
    std::optional<QString> uploadErrorCode;
    std::optional<QString> type;
    static constexpr auto fields()
    {
        using Self = UploadState;
        return std::tuple(property("taskId", &Self::taskId, "the service's name for the upload"),
            property("status", &Self::status,
                "an integer in decimal; `1`, `2` and `6` are final, `-1` that nothing is known of the "
                "upload"),
            property("data", &Self::data, "what the service says of the file"),
            property("uploadErrorCode", &Self::uploadErrorCode, "why it failed"),
            property("type", &Self::type, "the kind of transfer"));
    }
};

/// Starts the upload and queries once a second how it stands, until it has ended. [GUI thread]
class KUploadFileTask final : public QObject {
    Q_OBJECT

public:
    /// `arguments` are sent as they are: "userId", "filePath", "businessSource", "cloudDir", "autoRename".
    explicit KUploadFileTask(QMap<QString, QString> arguments);

    /// False when the service did not take the request, or while an upload of this task is under way.
    bool start();
    /// Asks the service to end the upload, which then ends with a status of the service's; one that has not
    /// begun yet is cancelled when it has. False when no upload is under way, or the service did not take the
    /// request.
    bool cancel();
    /// Cancels the upload, if one is under way, and starts it afresh; nothing more is reported of the one before.
    /// False when the service did not take the new one: then the one before goes on being reported.
    bool restart();
    /// Whether it has been started and has not ended.
    bool isRunning() const { return m_running; }

Q_SIGNALS:
    // The maps have "taskId" and what the service reported, all strings: "status", "data", "uploadErrorCode" (or
    // else the state that it answered, unless that is 0), "type".
    void sigStarted(const QVariantMap& task);
    void sigProgressChanged(const QVariantMap& task);
    /// Once an upload: the service said that it has ended (status 1, 2 or 6), or did not begin it or reports
    /// nothing of it for ten polls ("status" is "-1" then).
    void sigFinished(const QVariantMap& task);

private:
    QString request(const char* method, const QMap<QString, QString>& arguments,
        KLarkIpcWrapper::Callback<LarkIpcResult> callback);
    QString requestFor(
        const QString& taskId, const char* method, KLarkIpcWrapper::Callback<LarkIpcResult> callback);
    bool requestCancel(const QString& taskId);
    bool begin();
    void onBegun(int run, bool ok, const LarkIpcResult& result);
    void poll();
    void onState(int run, bool ok, const LarkIpcResult& result);
    QVariantMap report(const LarkIpcResult& result) const;
    void finish(QVariantMap task);

    const QMap<QString, QString> m_arguments;
    KLarkIpcWrapper m_service;
    QTimer m_pollTimer;
    QString m_taskId; ///< empty until the service has reported it
    bool m_running = false;
    bool m_isToBeCancelled = false; ///< as soon as it has begun
    int m_run = 0;                  ///< replies to an upload before the last restart are ignored
    int m_unanswered = 0;           ///< polls since the last answer
};

} // namespace jsapi
