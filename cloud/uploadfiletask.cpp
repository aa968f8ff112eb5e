#include "cloud/uploadfiletask.h"

#include "framework/values.h"

namespace {

constexpr int PollIntervalMs = 1000;
/// So many polls in a row may go without an answer that says how the upload stands.
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

QString KUploadFileTask::ask(const char* method, const QMap<QString, QString>& arguments,
    KLarkIpcWrapper::Callback<LarkIpcResult> callback)
{
    return m_service.call<LarkIpcResult>(
        QString::fromUtf16(LarkIpcCall), larkIpcArg(ownText(method), arguments), std::move(callback));
}

QMap<QString, QString> KUploadFileTask::ofTask() const
{
    return { { ownText("userId"), m_arguments.value(ownText("userId")) }, { ownText("taskId"), m_taskId } };
}

bool KUploadFileTask::start()
{
    return !m_running && begin();
}

bool KUploadFileTask::begin()
{
    const int run = ++m_run;
    m_pollTimer.stop();
    m_taskId.clear();
    m_unanswered = 0;
    m_running =
        !ask("uploadFileToCloud", m_arguments, [this, run](bool ok, const QString&, const auto& result) {
            onStarted(run, ok, result);
        }).isEmpty();
    return m_running;
}

bool KUploadFileTask::cancel()
{
    return !m_taskId.isEmpty()
        && !ask("cancelTransferTask", ofTask(), [](bool, const QString&, const auto&) {}).isEmpty();
}

bool KUploadFileTask::restart()
{
    cancel();
    return begin();
}

void KUploadFileTask::onStarted(int run, bool ok, const LarkIpcResult& result)
{
    if (run != m_run)
        return;
    m_taskId = report(result).value(ownText("taskId")).toString();
    if (!ok || result.state != 0 || m_taskId.isEmpty()) {
        finish(report(result));
        return;
    }
    m_pollTimer.start();
    Q_EMIT sigStarted({ { ownText("taskId"), m_taskId } });
}

void KUploadFileTask::poll()
{
    const int run = m_run;
    const QString request = ask("getTaskState", ofTask(),
        [this, run](bool ok, const QString&, const auto& result) { onState(run, ok, result); });
    if (request.isEmpty() && ++m_unanswered >= MostUnanswered)
        finish({ { ownText("taskId"), m_taskId } });
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
    const int status = task.value(ownText("status")).toString().toInt(&isNumber);
    m_unanswered = ok && isNumber ? 0 : m_unanswered + 1;
    if ((ok && isNumber && isFinal(status)) || m_unanswered >= MostUnanswered)
        finish(task);
}

QVariantMap KUploadFileTask::report(const LarkIpcResult& result) const
{
    QVariantMap task;
    for (const auto& [name, value] : result.resultMap)
        task.insert(QString::fromStdString(name), QString::fromStdString(value));
    if (!m_taskId.isEmpty())
        task.insert(ownText("taskId"), m_taskId);
    return task;
}

void KUploadFileTask::finish(QVariantMap task)
{
    m_pollTimer.stop();
    m_running = false;
    bool isNumber = false;
    if (!isFinal(task.value(ownText("status")).toString().toInt(&isNumber)) || !isNumber)
        task.insert(ownText("status"), QString::number(Lost));
    Q_EMIT sigFinished(task);
}
