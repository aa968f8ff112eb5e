#include "local/pathcheck.h"

#include "krt/dirs.h"
#include "suite/kpluginconfig.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace jsapi {

namespace {

QString expand(const QString& relative)
{
    static const QRegularExpression leadingSteps(heapString("^(\\.\\./)+"));
    static const QRegularExpression leadingVariable(heapString("^%(.*)%"));

    QString path = relative;
    path.remove(leadingSteps);
    path = QDir::cleanPath(path);
    if (QDir::isAbsolutePath(path))
        return path;
    const QRegularExpressionMatch variable = leadingVariable.match(path);
    if (variable.hasMatch())
        path.replace(0, variable.capturedLength(), qEnvironmentVariable(qPrintable(variable.captured(1))));
    return path;
}

} // namespace

std::optional<WritablePath> WritablePath::check(const QString& given)
{
    // A file name ends at its first NUL: what stands behind it would be checked but not used.
    if (given.isEmpty() || given.contains(QChar::Null))
        return std::nullopt;
    QString path = QDir::isAbsolutePath(given) ? given : expand(given);
    // A leading colon names a resource of the program to Qt, which calls it absolute.
    if (!path.startsWith(QLatin1Char('/')))
        return std::nullopt;
    path = QDir::cleanPath(path);
    // What file names can not spell, such as half a surrogate pair, would be left out: another path is used
    // then.
    if (QFile::decodeName(QFile::encodeName(path)) != path)
        return std::nullopt;
    if (krt::dirs::inBlackDownloadDir(path) || kpluginconfig::inPluginDownloadDir(path))
        return std::nullopt;
    return WritablePath(path);
}

} // namespace jsapi
