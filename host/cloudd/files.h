// Files of the disk, opened so that nothing is waited for and no link is followed unless somebody says so.
#pragma once

#include <QByteArray>
#include <QString>
#include <sys/stat.h>
#include <utility>

namespace cloudd {

/// Owns a file descriptor.
class Descriptor {
public:
    explicit Descriptor(int fd = -1)
        : m_fd(fd)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~Descriptor();

    int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }

private:
    int m_fd;
};

/// A regular file for reading, that is not waited for; nothing when there is none. `flags`: more of open's,
/// such as O_NOFOLLOW. `folder`: a folder's descriptor, or AT_FDCWD.
Descriptor openRegular(int folder, const QByteArray& path, int flags, struct stat& opened);
/// -1 when it can not be read.
qint64 readSlice(const Descriptor& file, char* buffer, qint64 bytes);

/// The folder `path` itself, made with mode 0700 where it is missing (but none above it); nothing when that
/// fails.
Descriptor openFolder(const QByteArray& path);
/// The folder `name` within another one, made where it is missing. A link in its place is replaced by a
/// folder. Throws Refusal(NameTaken) when something else is in its place, and Refusal(StorageFailed).
Descriptor enterFolder(const Descriptor& folder, const QByteArray& name);

} // namespace cloudd
