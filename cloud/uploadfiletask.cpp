#include "cloud/uploadfiletask.h"

#include "framework/values.h"

namespace jsapi {

namespace {

constexpr int PollIntervalMs = 1000;
/// So many polls in a row may have no answer that says how the upload stands.
constexpr int MostUnanswered = 10;
/// The "status" of an upload that the service did not begin or does not know any more.
constexpr int Lost = -1;

bool isFinal(int status)
{
    return status == 1 || status == 2 || status == 6;
}

} // namespace

KUploadFileTask::KUploadFileTask(QMap<QString, QString> arguments)
    : m_arguments(std::move(arguments))
    , m_pollTimer(this)
{
    m_pollTimer.setInterval(PollIntervalMs);
    connect(&m_pollTimer, &QTimer::timeout, this, &KUploadFileTask::poll);
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

bool KUploadFileTask::requestCancel(const QString& taskId)
{
    return !requestFor(taskId, "cancelTransferTask", [](bool, const QString&, const auto&) {}).isEmpty();
}

bool KUploadFileTask::start()
{
    return !m_running && begin();
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
    m_running = true;
    m_isToBeCancelled = false;
    return true;
}

bool KUploadFileTask::cancel()
{
    if (!m_running)
        return false;
    // Before the service has named the task there is nothing to cancel.
    m_isToBeCancelled = m_taskId.isEmpty();
    return m_isToBeCancelled || requestCancel(m_taskId);
}

bool KUploadFileTask::restart()
{
    cancel();
    return begin();
}

void KUploadFileTask::onBegun(int run, bool ok, const LarkIpcResult& result)
{
    const auto found = result.resultMap.find("taskId");
    const QString taskId =
        found == result.resultMap.end() ? QString() : QString::fromStdString(found->second);
    const bool hasBegun = ok && result.state == 0 && !taskId.isEmpty();
    if (run != m_run) {
        // The upload was restarted before it was known to have begun.
        if (hasBegun)
            requestCancel(taskId);
        return;
    }
    if (!hasBegun)
        return finish(report(result));
    m_taskId = taskId;
    m_pollTimer.start();
    if (std::exchange(m_isToBeCancelled, false))
        requestCancel(taskId);
    Q_EMIT sigStarted({ { heapString("taskId"), m_taskId } });
}

void KUploadFileTask::poll()
{
    if (m_unanswered >= MostUnanswered)
        return finish({ { heapString("taskId"), m_taskId } });
    ++m_unanswered;
    const int run = m_run;
    requestFor(m_taskId, "getTaskState",
        [this, run](bool ok, const QString&, const auto& result) { onState(run, ok, result); });
}

void KUploadFileTask::onState(int run, bool ok, const LarkIpcResult& result)
{
    if (run != m_run || !m_running)
        return;
    const QVariantMap task = report(result);
    Q_EMIT sigProgressChanged(task);
    // A listener may have restarted the upload.
    if (run != m_run || !m_running)
        return;
    bool isNumber = false;
    const int status = task.value(heapString("status")).toString().toInt(&isNumber);
    if (!ok || !isNumber)
        return;
    m_unanswered = 0;
    if (isFinal(status))
        finish(task);
}

QVariantMap KUploadFileTask::report(const LarkIpcResult& result) const
{
    QVariantMap task;
    for (const auto& [name, value] : result.resultMap)
        task.insert(QString::fromStdString(name), QString::fromStdString(value));
    if (!m_taskId.isEmpty())
        task.insert(heapString("taskId"), m_taskId);
    // A service that refuses says why in the state alone.
    if (result.state != 0 && !task.contains(heapString("uploadErrorCode")))
        task.insert(heapString("uploadErrorCode"), QString::number(result.state));
    return task;
}

void KUploadFileTask::finish(QVariantMap task)
{
    m_pollTimer.stop();
    m_running = false;
    bool isNumber = false;
    if (!isFinal(task.value(heapString("status")).toString().toInt(&isNumber)) || !isNumber)
        task.insert(heapString("status"), QString::number(Lost));
    Q_EMIT sigFinished(task);
}

} // namespace jsapi
