#include "host/suite/fileuse.h"

#include "host/suite/showntext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace suite {

namespace {

bool canAccess(const QString& path, int mode)
{
    return access(QFile::encodeName(path).constData(), mode) == 0;
}

QString findExistingAncestor(const QString& path)
{
    QString above = QFileInfo(path).path();
    while (!QFileInfo::exists(above) && above != QFileInfo(above).path())
        above = QFileInfo(above).path();
    return above;
}

} // namespace

bool canUse(const QString& path, FileUse use)
{
    if (!QDir::isAbsolutePath(path))
        return false;
    const QFileInfo info(path);
    if (info.exists())
        return canAccess(path, use == FileUse::Exists ? F_OK : use == FileUse::Reads ? R_OK : R_OK | W_OK);
    if (use != FileUse::Writes || info.isSymLink())
        return false;
    const QString above = findExistingAncestor(path);
    return QFileInfo(above).isDir() && canAccess(above, W_OK | X_OK);
}

QString findWriteError(const QString& path)
{
    const QFileInfo info(path);
    if (!info.dir().exists())
        return QStringLiteral("The folder %1 does not exist.").arg(showPath(info.path()));
    if (info.isDir())
        return QStringLiteral("%1 is a folder.").arg(showPath(path));
    if (!canUse(path, FileUse::Writes))
        return QStringLiteral("%1 can not be written to.").arg(showPath(path));
    return {};
}

} // namespace suite
