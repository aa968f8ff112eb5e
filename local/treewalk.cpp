#include "local/treewalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <vector>

namespace jsapi {

namespace {

struct Level {
    FileId id;
    QByteArray name; ///< in the level above
    std::vector<QByteArray> directories; ///< that have not been entered yet
};

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

FileDescriptor openDirectory(int above, const char* name)
{
    return FileDescriptor(openat(above, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

bool isStep(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// Shows what is in a directory; its directories are left for later.
bool list(const FileDescriptor& here, Level& level, TreeVisitor& visitor)
{
    struct stat facts { };
    const std::unique_ptr<DIR, CloseDirectory> entries(
        fstat(here.number(), &facts) == 0 ? fdopendir(fcntl(here.number(), F_DUPFD_CLOEXEC, 0)) : nullptr);
    if (!entries)
        return false;
    level.id = identify(facts);
    while (const dirent* entry = readdir(entries.get())) {
        if (isStep(entry->d_name))
            continue;
        bool isDirectory = entry->d_type == DT_DIR;
        bool isLink = entry->d_type == DT_LNK;
        if (entry->d_type == DT_UNKNOWN) { // some file systems do not say
            const auto entryFacts = lookAt(here.number(), entry->d_name);
            isDirectory = entryFacts && S_ISDIR(entryFacts->st_mode);
            isLink = entryFacts && S_ISLNK(entryFacts->st_mode);
        }
        if (isDirectory)
            level.directories.emplace_back(entry->d_name);
        else if (!visitor.visit(here.number(), entry->d_name, isLink))
            return false;
    }
    return true;
}

} // namespace

bool walkTree(const FileDescriptor& directory, TreeVisitor& visitor)
{
    FileDescriptor here = openDirectory(directory.number(), ".");
    std::vector<Level> levels(1);
    if (!here || !list(here, levels.back(), visitor))
        return false;
    for (;;) {
        if (!levels.back().directories.empty()) {
            const QByteArray name = std::move(levels.back().directories.back());
            levels.back().directories.pop_back();
            FileDescriptor child = openDirectory(here.number(), name.constData());
            if (!child) {
                if (!visitor.skip(here.number(), name.constData()))
                    return false;
                continue;
            }
            if (!visitor.enter(child.number(), name.constData()))
                return false;
            levels.emplace_back().name = name;
            here = std::move(child);
            if (!list(here, levels.back(), visitor))
                return false;
            continue;
        }
        const QByteArray name = std::move(levels.back().name);
        levels.pop_back();
        if (levels.empty())
            return true;
        here = openDirectory(here.number(), "..");
        struct stat facts { };
        if (!here || fstat(here.number(), &facts) != 0 || identify(facts) != levels.back().id
            || !visitor.leave(here.number(), name.constData()))
            return false;
    }
}

} // namespace jsapi
