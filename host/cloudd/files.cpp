#include "host/cloudd/files.h"

#include "host/cloudd/state.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

} // namespace

Descriptor::~Descriptor()
{
    if (m_fd >= 0)
        close(m_fd);
}

Descriptor openRegular(int folder, const QByteArray& path, int flags, struct stat& opened)
{
    const int always = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    Descriptor file(TEMP_FAILURE_RETRY(openat(folder, path.constData(), always | flags)));
    if (!file || fstat(file.get(), &opened) != 0 || !S_ISREG(opened.st_mode))
        return Descriptor();
    return file;
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
