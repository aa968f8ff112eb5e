#include "local/treechanges.h"

#include "local/pathcheck.h"

#include <QDir>
#include <QDirIterator>
#include <QUuid>
#include <cstdio>
#include <optional>
#include <sys/stat.h>
#include <utility>

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

/// Device and number of what a path names; links are not followed.
std::optional<std::pair<dev_t, ino_t>> entryOf(const QString& path)
{
    struct stat facts { };
    if (lstat(QFile::encodeName(path).constData(), &facts) != 0)
        return std::nullopt;
    return std::pair(facts.st_dev, facts.st_ino);
}

/// Whether a directory is the home directory or one of those above it, under whatever name.
bool holdsHome(const QString& directory)
{
    const auto given = entryOf(directory);
    QString above = QDir(QDir::homePath()).canonicalPath();
    bool holds = given && given == entryOf(QDir::homePath()); // which may be a link
    while (given && !holds && !above.isEmpty()) {
        holds = given == entryOf(above);
        above = above == QLatin1String("/") ? QString() : QFileInfo(above).path();
    }
    return holds;
}

} // namespace

bool holdsGuardedDirectory(const QString& directory)
{
    if (holdsHome(directory))
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
