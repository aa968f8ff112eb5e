#include "local/treechanges.h"

#include <QDir>
#include <QDirIterator>
#include <QUuid>
#include <cstdio>
#include <sys/stat.h>
#include <utility>

namespace jsapi {

bool copyFile(const QString& source, const WritablePath& target)
{
    return QFile::copy(source, target.string());
}

Replacement replaceFile(const QString& source, const WritablePath& target)
{
    const QFileInfo replaced(target.string());
    const QFileInfo directory(replaced.path());
    if ((replaced.isDir() && !replaced.isSymLink()) || !directory.isWritable())
        return Replacement::Refused;
    const QString copy =
        directory.filePath() + heapString("/.%1").arg(QUuid::createUuid().toString(QUuid::Id128));
    if (!QFile::copy(source, copy))
        return Replacement::CopyFailed;
    if (std::rename(QFile::encodeName(copy).constData(), QFile::encodeName(target.string()).constData()) == 0)
        return Replacement::Done;
    QFile::remove(copy);
    return Replacement::Refused;
}

bool makeDirectory(const WritablePath& directory)
{
    return QDir(heapString(".")).mkpath(directory.string());
}

bool removeFile(const WritablePath& file)
{
    return QFile::remove(file.string());
}

namespace {

/// Device and number of what a path names; links are not followed.
std::optional<std::pair<dev_t, ino_t>> identify(const QString& path)
{
    struct stat facts { };
    if (lstat(QFile::encodeName(path).constData(), &facts) != 0)
        return std::nullopt;
    return std::pair(facts.st_dev, facts.st_ino);
}

/// Whether a directory is the home directory or one of those above it, under whatever name.
bool holdsHome(const QString& directory)
{
    const auto given = identify(directory);
    QString above = QDir(QDir::homePath()).canonicalPath();
    bool holds = given && given == identify(QDir::homePath()); // which may be a link
    while (given && !holds && !above.isEmpty()) {
        holds = given == identify(above);
        above = above == QLatin1String("/") ? QString() : QFileInfo(above).path();
    }
    return holds;
}

} // namespace

bool holdsGuardedDirectory(const WritablePath& directory)
{
    if (holdsHome(directory.string()))
        return true;
    if (QFileInfo(directory.string()).isSymLink())
        return false;
    QDirIterator tree(directory.string(),
        QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot | QDir::NoSymLinks,
        QDirIterator::Subdirectories);
    while (tree.hasNext()) {
        if (!WritablePath::check(tree.next()))
            return true;
    }
    return false;
}

bool removeTree(const WritablePath& directory)
{
    if (QFileInfo(directory.string()).isSymLink())
        return removeFile(directory);
    return QDir(directory.string()).removeRecursively();
}

} // namespace jsapi
