#include "host/vexlite/failurelog.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

namespace vexlite {

FailureLog::FailureLog(const QString& directory)
    : m_file(QDir(directory).filePath(
        QString::fromLatin1("failures-%1.jsonl").arg(QCoreApplication::applicationPid())))
{
    // Numbers of processes come again.
    if (QDir().mkpath(directory))
        m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void FailureLog::callEnded(const CallFacts& call, const CallOutcome& outcome)
{
    if (!outcome.exception.isEmpty())
        add(call.object, call.member, outcome.exception, false);
}

void FailureLog::promiseSettled(const SettledPromise& promise)
{
    if (promise.state == JSPromiseState::Rejected && !promise.object.isNull())
        add(promise.object, promise.member, promise.value, true);
}

void FailureLog::add(const QString& object, const QString& member, const KJSVariant& failed, bool rejects)
{
    const Failure seen = failureOf(failed);
    const QString name = object.mid(object.indexOf(QLatin1Char('.')) + 1);
    const QJsonObject failure { { QStringLiteral("member"), name + QLatin1Char('.') + member },
        { QStringLiteral("code"), seen.code }, { QStringLiteral("msg"), seen.msg },
        { QStringLiteral("rejects"), rejects } };
    const QByteArray line = QJsonDocument(failure).toJson(QJsonDocument::Compact) + '\n';
    if (m_lines.contains(line))
        return;
    m_lines.insert(line);
    m_file.write(line);
}

} // namespace vexlite
