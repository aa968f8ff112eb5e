#include "local/treechanges.h"

#include "local/pathcheck.h"

#include <QDir>
#include <QDirIterator>
#include <QUuid>
#include <cstdio>

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

bool holdsGuardedDirectory(const QString& directory)
{
    const auto isOrHolds = [&](const QString& guarded) {
        const QString inside = QDir::cleanPath(guarded) + QLatin1Char('/');
        return inside.startsWith(
            directory.endsWith(QLatin1Char('/')) ? directory : directory + QLatin1Char('/'));
    };
    if (isOrHolds(QDir::homePath()) || isOrHolds(QDir(QDir::homePath()).canonicalPath()))
        return true;
    if (QFileInfo(directory).isSymLink())
        return false;
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
