#include "local/filedescriptor.h"

#include <QFile>
#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace jsapi {

QByteArray FileDescriptor::path() const
{
    return "/proc/self/fd/" + QByteArray::number(number());
}

bool FileDescriptor::isAt(const QString& path) const
{
    struct stat facts { };
    const auto found = lookAt(AT_FDCWD, QFile::encodeName(path), true);
    return fstat(number(), &facts) == 0 && found && identify(facts) == identify(*found);
}

QByteArray FileDescriptor::realPath() const
{
    const QByteArray path = readLink(AT_FDCWD, this->path().constData());
    struct stat facts { };
    const bool isThere = fstat(number(), &facts) == 0 && facts.st_nlink > 0;
    return isThere && path.startsWith('/') ? path : QByteArray();
}

QByteArray readLink(int directory, const char* name)
{
    std::array<char, PATH_MAX> target {};
    const ssize_t length = readlinkat(directory, name, target.data(), target.size());
    const bool isWhole = length > 0 && length < static_cast<ssize_t>(target.size());
    return isWhole ? QByteArray(target.data(), static_cast<int>(length)) : QByteArray();
}

std::optional<struct stat> lookAt(int directory, const QByteArray& name, bool followLinks)
{
    struct stat facts { };
    if (fstatat(directory, name.constData(), &facts, followLinks ? 0 : AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return facts;
}

FileDescriptor openRegularFile(const QByteArray& path)
{
    const FileDescriptor found(open(path.constData(), O_PATH | O_CLOEXEC));
    struct stat facts { };
    if (!found || fstat(found.number(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return {};
    return FileDescriptor(open(found.path().constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

FileDescriptor openRegularFile(const QString& path)
{
    // A file name ends at its first NUL.
    return path.contains(QChar::Null) ? FileDescriptor() : openRegularFile(QFile::encodeName(path));
}

std::optional<QByteArray> readAll(const FileDescriptor& file, qint64 limit)
{
    QByteArray content;
    char buffer[1 << 16];
    ssize_t count = 0;
    do {
        count = read(file.number(), buffer, sizeof buffer);
        if (count > 0)
            content.append(buffer, static_cast<int>(count));
    } while (content.size() <= limit && (count > 0 || (count < 0 && errno == EINTR)));
    if (count < 0 || content.size() > limit)
        return std::nullopt;
    return content;
}

bool writeAll(const Descriptor& file, const char* bytes, qint64 count)
{
    while (count > 0) {
        const ssize_t written = write(file.number(), bytes, static_cast<size_t>(count));
        if (written < 0 && errno != EINTR)
            return false;
        bytes += std::max<ssize_t>(written, 0);
        count -= std::max<ssize_t>(written, 0);
    }
    return true;
}

} // namespace jsapi
