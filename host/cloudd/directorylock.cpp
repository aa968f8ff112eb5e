#include "host/cloudd/directorylock.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace cloudd {

DirectoryLock::DirectoryLock(const QString& directory)
    : m_directory(QDir::cleanPath(directory))
{
}

DirectoryLock::Outcome DirectoryLock::lock()
{
    QDir().mkpath(QFileInfo(m_directory).path());
    const Descriptor folder = openFolder(QFile::encodeName(m_directory));
    if (!folder || fchmod(folder.get(), S_IRWXU) != 0)
        return Outcome::Impossible;
    m_lock = Descriptor(
        openat(folder.get(), "lock", O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!m_lock)
        return Outcome::Impossible;
    const bool isLocked = flock(m_lock.get(), LOCK_EX | LOCK_NB) == 0;
    if (!isLocked && errno != EWOULDBLOCK)
        return Outcome::Impossible;
    return isLocked && isValid() ? Outcome::Locked : Outcome::Taken;
}

bool DirectoryLock::isValid() const
{
    struct stat held { };
    struct stat found { };
    const QByteArray path = QFile::encodeName(m_directory + QStringLiteral("/lock"));
    return fstat(m_lock.get(), &held) == 0 && stat(path.constData(), &found) == 0
        && held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

} // namespace cloudd
