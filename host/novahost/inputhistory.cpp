#include "host/novahost/inputhistory.h"

#include <QDir>
#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr QFileDevice::Permissions OwnersOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// The directory for what programs remember; see the XDG base directory specification.
QString stateDirectory()
{
    const QString given = qEnvironmentVariable("XDG_STATE_HOME");
    return QDir(QDir::isAbsolutePath(given) ? given : QDir::home().filePath(QStringLiteral(".local/state")))
        .filePath(QStringLiteral("novahost"));
}

/// An input as one line, which ends with a newline.
QByteArray lineOf(QString input)
{
    input.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return input.toUtf8() + '\n';
}

QString inputOf(const QByteArray& line)
{
    QString input;
    const QString text = QString::fromUtf8(line);
    for (int i = 0; i < text.size(); ++i) {
        const bool isEscaped = text[i] == QLatin1Char('\\') && i + 1 < text.size();
        if (isEscaped)
            ++i;
        input += isEscaped && text[i] == QLatin1Char('n') ? QLatin1Char('\n') : text[i];
    }
    return input;
}

} // namespace

InputHistory::InputHistory()
    : m_file(QDir(stateDirectory()).filePath(QStringLiteral("repl-history")))
{
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return;
    while (!file.atEnd())
        m_inputs.append(inputOf(file.readLine().chopped(1)));
    if (m_inputs.size() > 2 * Length)
        shorten();
    m_inputs = m_inputs.mid(m_inputs.size() - Length);
}

void InputHistory::shorten()
{
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(OwnersOnly))
        return;
    for (const QString& input : m_inputs.mid(m_inputs.size() - Length))
        file.write(lineOf(input));
    file.commit();
}

void InputHistory::add(const QString& input)
{
    if (!m_inputs.isEmpty() && m_inputs.last() == input)
        return;
    m_inputs.append(input);
    QDir().mkpath(QFileInfo(m_file).path());
    const int file = open(
        QFile::encodeName(m_file).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    // One call: sessions that run at the same time write whole lines.
    const QByteArray line = lineOf(input);
    const bool ok =
        file >= 0 && write(file, line.constData(), static_cast<std::size_t>(line.size())) == line.size();
    m_error =
        ok ? QString() : QString::fromLatin1("%1: %2").arg(m_file, QString::fromLocal8Bit(strerror(errno)));
    if (file >= 0)
        close(file);
}

} // namespace novahost
