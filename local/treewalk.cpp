#include "local/treewalk.h"

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <vector>

namespace jsapi {

namespace {

struct Level {
    FileId id {};
    QByteArray name;                     ///< in the level above
    std::vector<QByteArray> directories; ///< that have not been entered yet
};

FileDescriptor openDirectory(const FileDescriptor& above, const char* name)
{
    return FileDescriptor(
        openat(above.number(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

std::optional<FileId> identifyOpen(const FileDescriptor& file)
{
    struct stat facts { };
    return fstat(file.number(), &facts) == 0 ? std::optional(identify(facts)) : std::nullopt;
}

bool isStep(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Shows an entry of a directory; directories are left for later.
bool show(const FileDescriptor& here, const dirent64& entry, Level& level, TreeVisitor& visitor)
{
    if (isStep(entry.d_name))
        return true;
    bool isDirectory = entry.d_type == DT_DIR;
    bool isLink = entry.d_type == DT_LNK;
    if (entry.d_type == DT_UNKNOWN) { // some file systems do not say
        const auto facts = lookAt(here.number(), entry.d_name);
        isDirectory = facts && S_ISDIR(facts->st_mode);
        isLink = facts && S_ISLNK(facts->st_mode);
    }
    if (!isDirectory)
        return visitor.visit(here, entry.d_name, isLink);
    level.directories.emplace_back(entry.d_name);
    return true;
}

/// Shows what is in a directory.
bool list(const FileDescriptor& here, Level& level, TreeVisitor& visitor)
{
    const std::optional<FileId> id = identifyOpen(here);
    if (!id)
        return false;
    level.id = *id;
    alignas(dirent64) std::array<char, 1 << 15> buffer;
    for (;;) {
        const ssize_t count = getdents64(here.number(), buffer.data(), buffer.size());
        if (count <= 0)
            return count == 0;
        for (ssize_t at = 0; at < count;) {
            const auto& entry = *reinterpret_cast<const dirent64*>(buffer.data() + at);
            if (!show(here, entry, level, visitor))
                return false;
            at += entry.d_reclen;
        }
    }
}

} // namespace

bool walkTree(const FileDescriptor& directory, TreeVisitor& visitor)
{
    FileDescriptor here = openDirectory(directory, ".");
    std::vector<Level> levels(1);
    if (!here || !list(here, levels.back(), visitor))
        return false;
    for (;;) {
        if (!levels.back().directories.empty()) {
            Level below;
            below.name = std::move(levels.back().directories.back());
            levels.back().directories.pop_back();
            FileDescriptor child = openDirectory(here, below.name.constData());
            const bool goesOn = !child
                ? visitor.skip(here, below.name.constData())
                : visitor.enter(child, below.name.constData()) && list(child, below, visitor)
                    && (!below.directories.empty() || visitor.leave(here, below.name.constData()));
            if (!goesOn)
                return false;
            if (!below.directories.empty()) {
                levels.push_back(std::move(below));
                here = std::move(child);
            }
            continue;
        }
        const QByteArray name = std::move(levels.back().name);
        levels.pop_back();
        if (levels.empty())
            return true;
        here = openDirectory(here, "..");
        if (!here || identifyOpen(here) != levels.back().id || !visitor.leave(here, name.constData()))
            return false;
    }
}

} // namespace jsapi
