#include "krt/ksafe.h"

#include <QProcess>

bool krt::ksafe::KProcess::StartDetach(const QString& command)
{
    QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty() || command.contains(QChar::Null))
        return false;
    const QString program = words.takeFirst();
    return QProcess::startDetached(program, words, QStringLiteral("/"));
}
