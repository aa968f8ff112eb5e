#include "local/treewalk.h"

#include <array>
#include <dirent.h>
#include <fcntl.h>

namespace jsapi {

namespace {

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

} // namespace

TreeWalk::TreeWalk(const FileDescriptor& directory, TreeVisitor& visitor)
    : m_visitor(visitor)
{
    begin(openDirectory(directory, "."), {});
}

TreeWalk::State TreeWalk::step()
{
    if (m_listed)
        return list();
    if (m_levels.empty())
        return State::Ended;
    return m_levels.back().directories.empty() ? goUp() : enterNext();
}

/// Begins to show what is in a directory.
bool TreeWalk::begin(FileDescriptor directory, QByteArray name)
{
    const std::optional<FileId> id = directory ? identifyOpen(directory) : std::nullopt;
    if (!id)
        return false;
    m_listed = std::move(directory);
    m_below = { *id, std::move(name), {} };
    return true;
}

/// Shows an entry of the directory; directories are left for later.
bool TreeWalk::show(const char* name, unsigned char type)
{
    if (isStep(name))
        return true;
    bool isDirectory = type == DT_DIR;
    bool isLink = type == DT_LNK;
    if (type == DT_UNKNOWN) { // some file systems do not say
        const auto facts = lookAt(m_listed.number(), name);
        isDirectory = facts && S_ISDIR(facts->st_mode);
        isLink = facts && S_ISLNK(facts->st_mode);
    }
    if (!isDirectory)
        return m_visitor.visit(m_listed, name, isLink);
    m_below.directories.emplace_back(name);
    return true;
}

TreeWalk::State TreeWalk::list()
{
    alignas(dirent64) std::array<char, 1 << 15> buffer;
    const ssize_t count = getdents64(m_listed.number(), buffer.data(), buffer.size());
    if (count < 0)
        return State::Ended;
    for (ssize_t at = 0; at < count;) {
        const auto& entry = *reinterpret_cast<const dirent64*>(buffer.data() + at);
        if (!show(entry.d_name, entry.d_type))
            return State::Ended;
        at += entry.d_reclen;
    }
    if (count > 0)
        return State::GoesOn;
    FileDescriptor listed = std::move(m_listed);
    if (!m_levels.empty() && m_below.directories.empty())
        return m_visitor.leave(m_here, m_below.name.constData()) ? State::GoesOn : State::Ended;
    m_levels.push_back(std::move(m_below));
    m_here = std::move(listed);
    return State::GoesOn;
}

TreeWalk::State TreeWalk::enterNext()
{
    QByteArray name = std::move(m_levels.back().directories.back());
    m_levels.back().directories.pop_back();
    FileDescriptor child = openDirectory(m_here, name.constData());
    const bool goesOn = !child ? m_visitor.skip(m_here, name.constData())
                               : m_visitor.enter(child, name.constData()) && begin(std::move(child), name);
    return goesOn ? State::GoesOn : State::Ended;
}

TreeWalk::State TreeWalk::goUp()
{
    const QByteArray name = std::move(m_levels.back().name);
    m_levels.pop_back();
    if (m_levels.empty())
        return State::Done;
    m_here = openDirectory(m_here, "..");
    return m_here && identifyOpen(m_here) == m_levels.back().id && m_visitor.leave(m_here, name.constData())
        ? State::GoesOn
        : State::Ended;
}

bool walkTree(const FileDescriptor& directory, TreeVisitor& visitor)
{
    TreeWalk walk(directory, visitor);
    for (;;) {
        const TreeWalk::State state = walk.step();
        if (state != TreeWalk::State::GoesOn)
            return state == TreeWalk::State::Done;
    }
}

} // namespace jsapi
