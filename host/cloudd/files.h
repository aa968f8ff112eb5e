// Opening files and folders without blocking (on pipes and devices).
#pragma once

#include <QByteArray>
#include <QString>
#include <fcntl.h>
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

/// A link to what is opened.
QByteArray descriptorPath(const Descriptor& file);
/// Opens a regular file for reading, without blocking; null when there is none. `flags`: further flags of
/// open(), such as O_NOFOLLOW. `folder`: a folder's descriptor, or AT_FDCWD.
Descriptor openRegular(int folder, const QByteArray& path, int flags, struct stat& opened);
constexpr qint64 NsPerSecond = 1'000'000'000;
/// Of a time stamp, since 1970.
inline qint64 nanoseconds(const timespec& time)
{
    return time.tv_sec * NsPerSecond + time.tv_nsec;
}
/// Whether it is the same file with the same content, as far as time stamps show. st_ctim is compared since any
/// program can set st_mtim back.
bool isUnchanged(const struct stat& before, const struct stat& now);
/// The number of bytes read; 0 at the end, -1 on an error.
qint64 readSlice(const Descriptor& file, char* buffer, qint64 bytes);

/// For openat(): a folder, and no link to one.
constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
/// Opens the folder `path`; a missing one is made with mode 0700, but its parent is not. Null when that
/// fails.
Descriptor openFolder(const QByteArray& path);
/// Opens the folder `name` in `folder`; a missing one is made, and a link of that name is replaced by a
/// folder. Throws Error: NameTaken (by a file), StorageFailed.
Descriptor enterFolder(const Descriptor& folder, const QByteArray& name);

} // namespace cloudd
