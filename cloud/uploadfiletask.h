// One upload that runs in the cloud-document service, and the cancels that were promised to its page.
#pragma once

#include "cloud/ipc/larkipcwrapper.h"
#include "framework/fields.h"

#include <QSet>
#include <QTimer>
#include <QVariantMap>

namespace jsapi {

struct UploadBegin {
    QString taskId;
    static constexpr auto fields()
    {
        return std::tuple(property("taskId", &UploadBegin::taskId, "the service's name for the upload"));
    }
};

/// How an upload stands, all as the service reports it. What it does not report is empty.
struct UploadState {
    QString taskId;
    QString status;
    QString data;
    QString uploadErrorCode;
    QString type;
    static constexpr auto fields()
    {
        using Self = UploadState;
        return std::tuple(property("taskId", &Self::taskId,
                              "the service's name for the upload; empty when it did not begin it"),
            property("status", &Self::status,
                "an integer in decimal; `1`, `2` and `6` are final, `-1` that nothing is known of the "
                "upload"),
            property("data", &Self::data, "what the service says of the file"),
            property("uploadErrorCode", &Self::uploadErrorCode, "why it failed"),
            property("type", &Self::type, "the kind of transfer"));
    }
};

/// Starts an upload and queries once a second how it stands, until it has ended. Its states:
///
///     Idle      nothing has been started
///     Starting  "uploadFileToCloud" is sent. A reply with a task id leads to Running, any other to Ended
///     Running   polled. A final status leads to Ended, ten polls in a row without a status to Lost
///     Lost      ended for the page, with "-1", though it may go on in the service
///     Ended     the service has ended it, or did not begin it
///
/// From each of them `begin` leads to Starting, with another upload. A cancel is apart from that: one that has
/// been promised is sent again and again, until the service confirms it or reports a final status. So it
/// outlives the upload's end, a restart, and the page. [GUI thread]
class KUploadFileTask final : public QObject {
    Q_OBJECT

public:
    /// `arguments` are sent as they are: "userId", "filePath", "businessSource", "cloudDir", "autoRename".
    explicit KUploadFileTask(QMap<QString, QString> arguments);

    /// False when the service did not take the request, or while an upload of this task is under way.
    bool start();
    /// Has the service end the upload, which then ends with a status of the service's; one that has not begun
    /// yet is cancelled when it has. False when there is none that may go on in the service, or the service did
    /// not take the request: then nothing is promised.
    bool cancel();
    /// Cancels the upload, if one may go on in the service, and starts it afresh; nothing more is reported of the
    /// one before. False when the service did not take the new one: then the one before goes on being reported.
    bool restart();
    /// Whether it has been started and its end has not been reported.
    bool isRunning() const { return m_state == State::Starting || m_state == State::Running; }
    /// Nobody listens any more: the object deletes itself as soon as no cancel is open.
    void release();

Q_SIGNALS:
    // The maps are those that the service reported, all strings. Those of the last two have all of "taskId",
    // "status", "data", "uploadErrorCode" (or else the state of the reply, unless that is 0) and "type".
    void sigStarted(const QVariantMap& task);
    void sigProgressChanged(const QVariantMap& task);
    /// Once an upload: the service said that it has ended (status 1, 2 or 6), or did not begin it or reports
    /// nothing of it for ten polls ("status" is "-1" then).
    void sigFinished(const QVariantMap& task);

private:
    enum class State { Idle, Starting, Running, Lost, Ended };

    QString request(const char* method, const QMap<QString, QString>& arguments,
        KLarkIpcWrapper::Callback<LarkIpcResult> callback);
    QString requestFor(
        const QString& taskId, const char* method, KLarkIpcWrapper::Callback<LarkIpcResult> callback);
    bool begin();
    void onBegun(int run, bool ok, const LarkIpcResult& result);
    void poll();
    void onState(int run, const LarkIpcResult& result);
    QVariantMap report(const LarkIpcResult& result) const;
    void finish(QVariantMap task);

    QString taskToCancel() const;
    bool requestCancel(const QString& taskId);
    void keepCancelling(const QString& taskId);
    void repeatCancels();
    void endWhenDone();
    Q_SLOT void onLoginStatusChanged(bool isLogin);

    const QMap<QString, QString> m_arguments;
    KLarkIpcWrapper m_service;
    QTimer m_pollTimer;
    State m_state = State::Idle;
    QString m_taskId;       ///< empty until the service has reported it
    int m_run = 0;          ///< replies to an upload before the last restart are ignored
    int m_unanswered = 0;   ///< polls since the last one that was answered with a status
    QSet<int> m_doomedRuns; ///< to be cancelled as soon as the service has named their tasks
    /// The cancels that are promised and not confirmed, by tasks: whether the last request may still be answered.
    QMap<QString, bool> m_cancels;
    QTimer m_cancelTimer; ///< repeats them, at ever longer intervals
    bool m_isReleased = false;
};

} // namespace jsapi
