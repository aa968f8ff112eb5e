#include "local/treechanges.h"

#include "local/pathcheck.h"

#include <QDir>
#include <QDirIterator>
#include <QUuid>
#include <cstdio>
#include <sys/stat.h>

Replacement replaceFile(const QString& source, const QString& target)
{
    const QFileInfo replaced(target);
    const QFileInfo directory(replaced.path());
    if ((replaced.isDir() && !replaced.isSymLink()) || !directory.isWritable())
        return Replacement::Refused;
    const QString copy =
        directory.filePath() + QString::fromLatin1("/.%1").arg(QUuid::createUuid().toString(QUuid::Id128));
    if (!QFile::copy(source, copy))
        return Replacement::CopyFailed;
    if (std::rename(QFile::encodeName(copy).constData(), QFile::encodeName(target).constData()) == 0)
        return Replacement::Done;
    QFile::remove(copy);
    return Replacement::Refused;
}

namespace {

/// Whether a directory is the home directory or one of those above it, under whatever name.
bool holdsHome(const QString& directory)
{
    struct stat given { };
    if (stat(QFile::encodeName(directory).constData(), &given) != 0)
        return false;
    for (QString above = QDir(QDir::homePath()).canonicalPath(); !above.isEmpty();
         above = above == QLatin1String("/") ? QString() : QFileInfo(above).path()) {
        struct stat home { };
        if (stat(QFile::encodeName(above).constData(), &home) == 0 && home.st_dev == given.st_dev
            && home.st_ino == given.st_ino)
            return true;
    }
    return false;
}

} // namespace

bool holdsGuardedDirectory(const QString& directory)
{
    if (QFileInfo(directory).isSymLink())
        return false;
    if (holdsHome(directory))
        return true;
    QDirIterator tree(directory,
        QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot | QDir::NoSymLinks,
        QDirIterator::Subdirectories);
    while (tree.hasNext()) {
        if (!checkedPath(tree.next()))
            return true;
    }
    return false;
}

bool removeTree(const QString& directory)
{
    if (QFileInfo(directory).isSymLink())
        return QFile::remove(directory);
    return QDir(directory).removeRecursively();
}
