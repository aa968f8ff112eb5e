#include "local/treechanges.h"

#include "exports/newfile.h"
#include "local/guardedplaces.h"
#include "local/treewalk.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace jsapi {

namespace {

constexpr mode_t Permissions = 0777;
constexpr mode_t NewPermissions = 0666;
/// For what may be a copy of something private, or replace it.
constexpr mode_t PrivatePermissions = 0600;

bool copyByReading(int from, const Descriptor& to)
{
    QByteArray buffer(1 << 18, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = read(from, buffer.data(), static_cast<size_t>(buffer.size()));
        if (count == 0)
            return true;
        if (count < 0 ? errno != EINTR : !writeAll(to, buffer.constData(), count))
            return false;
    }
}

/// Copies content and permissions. A file that tells no size though it has content, as the system's own do, is
/// not copied: it may have no end.
bool copyContent(const FileDescriptor& source, const Descriptor& target)
{
    struct stat facts { };
    if (lseek(source.number(), 0, SEEK_SET) != 0 || fstat(source.number(), &facts) != 0)
        return false;
    char byte = 0;
    if (facts.st_size == 0 && read(source.number(), &byte, 1) != 0)
        return false;
    // Within the kernel where the file system can. What that has left out is read, since on some file systems it
    // ends early.
    constexpr std::size_t Part = 1 << 30;
    while (facts.st_size > 0
        && copy_file_range(source.number(), nullptr, target.number(), nullptr, Part, 0) > 0) { }
    return copyByReading(source.number(), target)
        && fchmod(target.number(), facts.st_mode & Permissions) == 0;
}

bool isFile(const std::optional<struct stat>& facts)
{
    return facts && S_ISREG(facts->st_mode);
}

/// Whether an entry is a regular file or a link to one, so that nothing else goes with it.
bool isFileOrLinkToFile(const WritablePath& path)
{
    const auto entry = path.look();
    return isFile(entry) || (entry && S_ISLNK(entry->st_mode) && isFile(path.look(true)));
}

class TreeRemoval final : public TreeVisitor {
public:
    bool isComplete() const noexcept { return m_isComplete; }

private:
    bool visit(const FileDescriptor& directory, const char* name, bool) override
    {
        return remove(directory, name, 0);
    }
    bool enter(const FileDescriptor&, const char*) override { return true; }
    bool leave(const FileDescriptor& above, const char* name) override
    {
        return remove(above, name, AT_REMOVEDIR);
    }
    bool skip(const FileDescriptor& above, const char* name) override
    {
        return remove(above, name, AT_REMOVEDIR);
    }
    /// What is left does not keep the rest from going.
    bool remove(const FileDescriptor& directory, const char* name, int flags)
    {
        m_isComplete = unlinkat(directory.number(), name, flags) == 0 && m_isComplete;
        return true;
    }

    bool m_isComplete = true;
};

} // namespace

bool copyFile(const FileDescriptor& source, const WritablePath& target)
{
    const std::optional<QByteArray> name = target.name();
    if (!name || target.look())
        return false;
    NewFile copy(target.above().number(), PrivatePermissions);
    return copy && copyContent(source, copy.file()) && copy.take(*name, false);
}

Replacement replaceFile(const FileDescriptor& source, const WritablePath& target)
{
    const std::optional<QByteArray> name = target.name();
    if (!name || !isFileOrLinkToFile(target))
        return Replacement::Refused;
    NewFile copy(target.above().number(), PrivatePermissions);
    if (!copy)
        return errno == ENOSPC || errno == EDQUOT ? Replacement::CopyFailed : Replacement::Refused;
    if (!copyContent(source, copy.file()))
        return Replacement::CopyFailed;
    return copy.take(*name, true) ? Replacement::Done : Replacement::Refused;
}

bool writeFile(const QByteArray& content, const WritablePath& target)
{
    const auto present = target.look();
    if (present && !S_ISREG(present->st_mode))
        return false;
    NewFile file(target.above().number(), present ? PrivatePermissions : NewPermissions);
    return file && writeAll(file.file(), content.constData(), content.size())
        && (!present || fchmod(file.file().number(), present->st_mode & Permissions) == 0)
        && fdatasync(file.file().number()) == 0 && file.take(*target.name(), true);
}

bool makeDirectory(const WritablePath& directory)
{
    FileDescriptor made;
    for (const QByteArray& name : directory.names()) {
        const int above = made ? made.number() : directory.above().number();
        if (mkdirat(above, name.constData(), Permissions) != 0 && errno != EEXIST)
            return false;
        made = FileDescriptor(openat(above, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!made)
            return false;
    }
    return true;
}

bool removeFile(const WritablePath& file)
{
    return file.name() && isFileOrLinkToFile(file)
        && unlinkat(file.above().number(), file.name()->constData(), 0) == 0;
}

bool emptyDirectory(const FileDescriptor& directory)
{
    TreeRemoval removal;
    return walkTree(directory, removal) && removal.isComplete();
}

Removal removeTree(const WritablePath& path)
{
    const std::optional<QByteArray> name = path.name();
    const auto entry = path.look();
    if (!name)
        return Removal::Refused;
    const int above = path.above().number();
    if (entry && S_ISLNK(entry->st_mode)) {
        if (leadsToGuardedPlace(path.string()))
            return Removal::Refused;
        return unlinkat(above, name->constData(), 0) == 0 ? Removal::Done : Removal::Incomplete;
    }
    const FileDescriptor directory(
        openat(above, name->constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory)
        return Removal::Incomplete;
    if (holdsGuardedPlace(directory))
        return Removal::Refused;
    const bool isEmpty = emptyDirectory(directory);
    return unlinkat(above, name->constData(), AT_REMOVEDIR) == 0 && isEmpty ? Removal::Done
                                                                            : Removal::Incomplete;
}

} // namespace jsapi
