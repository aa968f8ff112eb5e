#include "cloud/uploadfiletask.h"

#include "framework/values.h"
#include "suite/kcloudsvrproxy.h"
#include "suite/kcoreapplication.h"

#include <algorithm>

namespace jsapi {

namespace {

constexpr int PollIntervalMs = 1000;
/// So many polls in a row may have no answer that says how the upload stands.
constexpr int MostUnanswered = 10;
/// The "status" of an upload that the service did not begin or does not know any more.
constexpr int Lost = -1;

constexpr int FirstRepeatMs = 1000;
constexpr int LongestRepeatMs = 64000;

/// The service's status; nothing when that is no integer in decimal.
std::optional<int> readStatus(const QVariantMap& task)
{
    bool isNumber = false;
    const int status = task.value(heapString("status")).toString().toInt(&isNumber);
    return isNumber ? std::optional(status) : std::nullopt;
}

bool isFinal(std::optional<int> status)
{
    return status == 1 || status == 2 || status == 6;
}

} // namespace

KUploadFileTask::KUploadFileTask(QMap<QString, QString> arguments)
    : m_arguments(std::move(arguments))
    , m_pollTimer(this)
    , m_cancelTimer(this)
{
    m_pollTimer.setInterval(PollIntervalMs);
    connect(&m_pollTimer, &QTimer::timeout, this, &KUploadFileTask::poll);
    m_cancelTimer.setSingleShot(true);
    connect(&m_cancelTimer, &QTimer::timeout, this, &KUploadFileTask::repeatCancels);
}

QString KUploadFileTask::request(const char* method, const QMap<QString, QString>& arguments,
    KLarkIpcWrapper::Callback<LarkIpcResult> callback)
{
    return m_service.call<LarkIpcResult>(
        QString::fromUtf16(LarkIpcCall), larkIpcArg(heapString(method), arguments), std::move(callback));
}

QString KUploadFileTask::requestFor(
    const QString& taskId, const char* method, KLarkIpcWrapper::Callback<LarkIpcResult> callback)
{
    return request(method,
        { { heapString("userId"), m_arguments.value(heapString("userId")) },
            { heapString("taskId"), taskId } },
        std::move(callback));
}

bool KUploadFileTask::start()
{
    return !isRunning() && begin();
}

bool KUploadFileTask::begin()
{
    const int run = m_run + 1;
    if (request("uploadFileToCloud", m_arguments, [this, run](bool ok, const QString&, const auto& result) {
            onBegun(run, ok, result);
        }).isEmpty())
        return false;
    m_run = run;
    m_pollTimer.stop();
    m_taskId.clear();
    m_unanswered = 0;
    m_state = State::Starting;
    return true;
}

bool KUploadFileTask::cancel()
{
    if (m_state == State::Starting) {
        // Before the service has named the task there is nothing to cancel.
        m_doomedRuns.insert(m_run);
        return true;
    }
    const QString taskId = taskToCancel();
    if (taskId.isEmpty() || !requestCancel(taskId))
        return false;
    keepCancelling(taskId);
    return true;
}

bool KUploadFileTask::restart()
{
    const bool isStarting = m_state == State::Starting;
    const int run = m_run;
    const QString taskId = taskToCancel();
    if (!taskId.isEmpty())
        requestCancel(taskId);
    if (!begin())
        return false;
    if (isStarting)
        m_doomedRuns.insert(run);
    if (!taskId.isEmpty())
        keepCancelling(taskId);
    return true;
}

void KUploadFileTask::release()
{
    m_isReleased = true;
    m_pollTimer.stop();
    ++m_run;
    endWhenDone();
}

void KUploadFileTask::endWhenDone()
{
    if (m_isReleased && m_doomedRuns.isEmpty() && m_cancels.isEmpty())
        deleteLater();
}

void KUploadFileTask::onBegun(int run, bool ok, const LarkIpcResult& result)
{
    const auto found = result.resultMap.find("taskId");
    const QString taskId =
        found == result.resultMap.end() ? QString() : QString::fromStdString(found->second);
    const bool hasBegun = ok && result.state == 0 && !taskId.isEmpty();
    if (m_doomedRuns.remove(run) && hasBegun) {
        keepCancelling(taskId);
        requestCancel(taskId);
    }
    if (run != m_run)
        return endWhenDone();
    if (!hasBegun)
        return finish(report(result));
    m_taskId = taskId;
    m_state = State::Running;
    m_pollTimer.start();
    Q_EMIT sigStarted({ { heapString("taskId"), m_taskId } });
}

void KUploadFileTask::poll()
{
    if (m_unanswered >= MostUnanswered)
        return finish(report({}));
    ++m_unanswered;
    const int run = m_run;
    requestFor(m_taskId, "getTaskState",
        [this, run](bool, const QString&, const auto& result) { onState(run, result); });
}

void KUploadFileTask::onState(int run, const LarkIpcResult& result)
{
    if (run != m_run || m_state != State::Running)
        return;
    const QVariantMap task = report(result);
    Q_EMIT sigProgressChanged(task);
    // A listener may have restarted the upload.
    if (run != m_run || m_state != State::Running)
        return;
    // A reply that failed may say how the upload stands as well.
    const std::optional<int> status = readStatus(task);
    if (!status)
        return;
    m_unanswered = 0;
    if (isFinal(status))
        return finish(task);
    // The service is back, if it was gone.
    const auto cancel = m_cancels.constFind(m_taskId);
    if (cancel != m_cancels.constEnd() && !*cancel)
        requestCancel(m_taskId);
}

QVariantMap KUploadFileTask::report(const LarkIpcResult& result) const
{
    QVariantMap task;
    forEachField<UploadState>([&](const auto& field, std::size_t) {
        task.insert(heapString(field.name), heapString(""));
        return true;
    });
    for (const auto& [name, value] : result.resultMap)
        task.insert(QString::fromStdString(name), QString::fromStdString(value));
    if (!m_taskId.isEmpty())
        task.insert(heapString("taskId"), m_taskId);
    // A service that refuses says why in the state alone.
    if (result.state != 0 && result.resultMap.find("uploadErrorCode") == result.resultMap.end())
        task.insert(heapString("uploadErrorCode"), QString::number(result.state));
    return task;
}

void KUploadFileTask::finish(QVariantMap task)
{
    m_pollTimer.stop();
    const bool hasEnded = isFinal(readStatus(task));
    m_state = hasEnded || m_taskId.isEmpty() ? State::Ended : State::Lost;
    if (hasEnded)
        m_cancels.remove(m_taskId);
    else
        task.insert(heapString("status"), QString::number(Lost));
    Q_EMIT sigFinished(task);
}

/// Empty when nothing of the last upload may go on in the service, or it has no name yet.
QString KUploadFileTask::taskToCancel() const
{
    return m_state == State::Running || m_state == State::Lost ? m_taskId : QString();
}

bool KUploadFileTask::requestCancel(const QString& taskId)
{
    const bool sent = !requestFor(
        taskId, "cancelTransferTask", [this, taskId](bool ok, const QString&, const auto& result) {
            if (ok && result.state == 0)
                m_cancels.remove(taskId);
            else if (m_cancels.contains(taskId))
                m_cancels[taskId] = false;
            endWhenDone();
        }).isEmpty();
    if (m_cancels.contains(taskId))
        m_cancels[taskId] = sent;
    return sent;
}

void KUploadFileTask::keepCancelling(const QString& taskId)
{
    m_cancels.insert(taskId, true);
    m_cancelTimer.start(FirstRepeatMs);
    // A login says that the service is back.
    if (const QObject* proxy = KCoreApplication::cloudSvrProxy())
        connect(proxy, SIGNAL(loginStatusChanged(bool)), this, SLOT(onLoginStatusChanged(bool)),
            Qt::UniqueConnection);
}

void KUploadFileTask::repeatCancels()
{
    const QStringList tasks = m_cancels.keys();
    for (const QString& taskId : tasks)
        requestCancel(taskId);
    if (!tasks.isEmpty())
        m_cancelTimer.start(std::clamp(2 * m_cancelTimer.interval(), FirstRepeatMs, LongestRepeatMs));
}

void KUploadFileTask::onLoginStatusChanged(bool isLogin)
{
    if (isLogin && !m_cancels.isEmpty())
        m_cancelTimer.start(0);
}

} // namespace jsapi
