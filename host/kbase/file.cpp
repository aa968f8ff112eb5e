// Share modes are implemented with locks: flock among callers of this function; record locks, which other
// programs set on files that they edit, are respected.
#include "kbase/file.h"

#include <QFile>
#include <QString>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Besides what the library asks for.
constexpr std::uint32_t GenericRead = 0x80000000u;
constexpr std::uint32_t FileShareWrite = 2;

bool isRegularFile(int file)
{
    struct stat facts { };
    return fstat(file, &facts) == 0 && S_ISREG(facts.st_mode);
}

/// Whether another process has a record lock that conflicts with this access.
bool isLockedAgainst(int file, bool writing)
{
    struct flock lock { };
    lock.l_type = static_cast<short>(writing ? F_WRLCK : F_RDLCK);
    lock.l_whence = SEEK_SET;
    return fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

/// Takes the lock for the share mode; false when another lock conflicts with it. On a file system without
/// locks there are no share modes.
bool lockShareMode(int file, bool shareWriting)
{
    return flock(file, (shareWriting ? LOCK_SH : LOCK_EX) | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

} // namespace

XHANDLE _XCreateFileW(const char16_t* name, std::uint32_t access, std::uint32_t share, void* security,
    std::uint32_t disposition, std::uint32_t attributes, XHANDLE model)
{
    if (!name || security || disposition != X_OPEN_EXISTING || attributes || model)
        return X_INVALID_HANDLE;
    const bool writing = access & X_GENERIC_WRITE;
    const int mode = !writing ? O_RDONLY : access & GenericRead ? O_RDWR : O_WRONLY;
    const QByteArray path = QFile::encodeName(QString::fromUtf16(name));
    // Without O_NONBLOCK opening a pipe would block until its other end is opened.
    const int file = open(path.constData(), mode | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return X_INVALID_HANDLE;
    if (!isRegularFile(file) || isLockedAgainst(file, writing)
        || !lockShareMode(file, share & FileShareWrite)) {
        close(file);
        return X_INVALID_HANDLE;
    }
    // So that descriptor 0 does not become a null handle.
    return reinterpret_cast<XHANDLE>(static_cast<std::intptr_t>(file) + 1); // NOLINT(*-int-to-ptr)
}

bool _XCloseHandle(XHANDLE handle)
{
    if (!handle || handle == X_INVALID_HANDLE)
        return false;
    return close(static_cast<int>(reinterpret_cast<std::intptr_t>(handle) - 1)) == 0;
}
