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

void FailureLog::add(const TracedCall& call)
{
    if (call.succeeded)
        return;
    const QString object = call.object.mid(call.object.indexOf(QLatin1Char('.')) + 1);
    const QJsonObject failure { { QStringLiteral("member"), object + QLatin1Char('.') + call.member },
        { QStringLiteral("code"), call.code }, { QStringLiteral("msg"), call.message },
        { QStringLiteral("rejects"), call.isRejection } };
    const QByteArray line = QJsonDocument(failure).toJson(QJsonDocument::Compact) + '\n';
    if (m_lines.contains(line))
        return;
    m_lines.insert(line);
    m_file.write(line);
}

} // namespace vexlite
