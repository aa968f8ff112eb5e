#include "host/cloudd/files.h"

#include "host/cloudd/state.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

QByteArray descriptorPath(const Descriptor& file)
{
    return "/proc/self/fd/" + QByteArray::number(file.get());
}

Descriptor::~Descriptor()
{
    if (m_fd >= 0)
        close(m_fd);
}

Descriptor openRegular(int folder, const QByteArray& path, int flags, struct stat& opened)
{
    // Looked at before it is opened: whoever writes to a pipe would lose what nobody reads.
    const Descriptor found(TEMP_FAILURE_RETRY(openat(folder, path.constData(), O_PATH | O_CLOEXEC | flags)));
    if (!found || fstat(found.get(), &opened) != 0 || !S_ISREG(opened.st_mode))
        return Descriptor();
    return Descriptor(TEMP_FAILURE_RETRY(open(descriptorPath(found).constData(), O_RDONLY | O_CLOEXEC)));
}

bool isUnchanged(const struct stat& before, const struct stat& now)
{
    const auto isSame = [](const timespec& one, const timespec& other) {
        return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
    };
    return now.st_dev == before.st_dev && now.st_ino == before.st_ino && now.st_size == before.st_size
        && isSame(now.st_mtim, before.st_mtim) && isSame(now.st_ctim, before.st_ctim);
}

qint64 readSlice(const Descriptor& file, char* buffer, qint64 bytes)
{
    return TEMP_FAILURE_RETRY(read(file.get(), buffer, static_cast<size_t>(bytes)));
}

Descriptor openFolder(const QByteArray& path)
{
    if (mkdir(path.constData(), S_IRWXU) != 0 && errno != EEXIST)
        return Descriptor();
    return Descriptor(open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

Descriptor enterFolder(const Descriptor& folder, const QByteArray& name)
{
    Descriptor entered(openat(folder.get(), name.constData(), FolderFlags));
    if (entered)
        return entered;
    struct stat found { };
    if (fstatat(folder.get(), name.constData(), &found, AT_SYMLINK_NOFOLLOW) == 0) {
        if (!S_ISLNK(found.st_mode))
            throw Error(S_ISDIR(found.st_mode) ? State::StorageFailed : State::NameTaken);
        unlinkat(folder.get(), name.constData(), 0);
    }
    if (mkdirat(folder.get(), name.constData(), S_IRWXU) != 0)
        throw Error(State::StorageFailed);
    entered = Descriptor(openat(folder.get(), name.constData(), FolderFlags));
    if (!entered)
        throw Error(State::StorageFailed);
    return entered;
}

} // namespace cloudd
