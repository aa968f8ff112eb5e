#include "local/archive/unpackedtree.h"

#include "local/treechanges.h"

#include <QUuid>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace jsapi {

namespace {

constexpr mode_t DirectoryMode = 0777;
constexpr mode_t FileMode = 0666;

FileDescriptor openBelow(int above, const char* name)
{
    return FileDescriptor(openat(above, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Makes one directory, or opens the one that is there.
FileDescriptor enterDirectory(int above, const char* name)
{
    if (mkdirat(above, name, DirectoryMode) != 0 && errno != EEXIST)
        return {};
    return openBelow(above, name);
}

/// The directory at the end of steps that are separated by slashes, in which `enter` goes on from each to the next.
template <typename Enter>
FileDescriptor descend(const FileDescriptor& root, std::string_view steps, Enter enter)
{
    FileDescriptor here = openBelow(root.number(), ".");
    while (here && !steps.empty()) {
        const std::size_t length = std::min(steps.find('/'), steps.size());
        if (length)
            here = enter(here.number(), std::string(steps.substr(0, length)).c_str());
        steps.remove_prefix(std::min(length + 1, steps.size()));
    }
    return here;
}

std::vector<QByteArray> listNames(const FileDescriptor& directory)
{
    std::vector<QByteArray> names;
    FileDescriptor own = openBelow(directory.number(), ".");
    DIR* listing = own ? fdopendir(own.number()) : nullptr;
    if (!listing)
        return names;
    own.release();
    while (const dirent* entry = readdir(listing)) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    closedir(listing);
    return names;
}

bool isFileOrLinkToFile(int directory, const QByteArray& name)
{
    const auto led = lookAt(directory, name, true);
    return led && S_ISREG(led->st_mode);
}

/// Moves to where nothing is.
bool moveTo(int from, const QByteArray& name, int to, const QByteArray& newName)
{
    if (renameat2(from, name.constData(), to, newName.constData(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems can not be told that nothing is to be replaced.
    if (errno != EINVAL)
        return false;
    if (lookAt(to, newName)) {
        errno = EEXIST;
        return false;
    }
    return renameat(from, name.constData(), to, newName.constData()) == 0;
}

} // namespace

std::unique_ptr<UnpackedTree> UnpackedTree::make(const WritablePath& folder)
{
    std::unique_ptr<UnpackedTree> tree(new UnpackedTree);
    const auto present = folder.look();
    if (present && !S_ISDIR(present->st_mode)) {
        errno = ENOTDIR;
        return nullptr;
    }
    const bool isThere = present || folder.names().empty();
    tree->m_above = openBelow(folder.above().number(), present ? folder.name()->constData() : ".");
    const QByteArray name = '.' + QUuid::createUuid().toByteArray(QUuid::Id128);
    if (!tree->m_above || mkdirat(tree->m_above.number(), name.constData(), DirectoryMode) != 0)
        return nullptr;
    tree->m_name = name;
    tree->m_directory = openBelow(tree->m_above.number(), name.constData());
    if (!tree->m_directory)
        return nullptr;
    std::string steps;
    if (!isThere) {
        tree->m_placeName = folder.names().front();
        for (auto step = folder.names().begin() + 1; step != folder.names().end(); ++step)
            steps += step->toStdString() + '/';
    }
    tree->m_root = descend(tree->m_directory, steps, enterDirectory);
    return tree->m_root ? std::move(tree) : nullptr;
}

UnpackedTree::~UnpackedTree()
{
    const int error = errno;
    if (!m_name.isEmpty() && m_directory)
        (void)emptyDirectory(m_directory);
    if (!m_name.isEmpty())
        unlinkat(m_above.number(), m_name.constData(), AT_REMOVEDIR);
    errno = error;
}

QByteArray UnpackedTree::pathOf(const std::string& name) const
{
    return m_root.realPath() + '/' + QByteArray::fromStdString(name);
}

bool UnpackedTree::makeDirectory(const std::string& name) const
{
    return bool(descend(m_root, name, enterDirectory));
}

FileDescriptor UnpackedTree::makeFile(const std::string& name) const
{
    const std::size_t slash = name.rfind('/');
    const FileDescriptor directory =
        descend(m_root, slash == std::string::npos ? "" : name.substr(0, slash), enterDirectory);
    if (!directory)
        return {};
    const char* last = name.c_str() + (slash == std::string::npos ? 0 : slash + 1);
    return FileDescriptor(
        openat(directory.number(), last, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, FileMode));
}

UnpackedTree::Placement UnpackedTree::place(bool overwrites)
{
    if (!m_placeName.isEmpty()) {
        if (!moveTo(m_above.number(), m_name, m_above.number(), m_placeName))
            return { errno == EEXIST ? Ended::Exists : Ended::Failed, {}, errno };
        m_name.clear();
        return { Ended::Done, {} };
    }
    Placement placement = merge(m_root, m_above, {}, overwrites);
    if (placement.ended != Ended::Done)
        undo();
    return placement;
}

UnpackedTree::Placement UnpackedTree::merge(
    const FileDescriptor& from, const FileDescriptor& to, const QByteArray& directory, bool overwrites)
{
    for (const QByteArray& name : listNames(from)) {
        if (moveTo(from.number(), name, to.number(), name)) {
            m_moves.push_back({ directory, name, false });
            continue;
        }
        const int error = errno;
        const auto ours = lookAt(from.number(), name);
        const auto present = lookAt(to.number(), name);
        if (error != EEXIST || !ours || !present)
            return { Ended::Failed, {}, error };
        const QByteArray path = directory + '/' + name;
        if (S_ISDIR(ours->st_mode) && S_ISDIR(present->st_mode)) {
            const FileDescriptor fromBelow = openBelow(from.number(), name.constData());
            const FileDescriptor toBelow = openBelow(to.number(), name.constData());
            if (!fromBelow || !toBelow)
                return { Ended::Failed, {}, errno };
            Placement below = merge(fromBelow, toBelow, path, overwrites);
            if (below.ended != Ended::Done)
                return below;
            continue;
        }
        if (!overwrites || !S_ISREG(ours->st_mode) || !isFileOrLinkToFile(to.number(), name))
            return { Ended::Exists, path };
        if (renameat2(from.number(), name.constData(), to.number(), name.constData(), RENAME_EXCHANGE) != 0)
            return { Ended::Failed, {}, errno };
        m_moves.push_back({ directory, name, true });
    }
    return { Ended::Done, {} };
}

void UnpackedTree::undo()
{
    const auto open = [](int above, const char* name) { return openBelow(above, name); };
    for (auto move = m_moves.rbegin(); move != m_moves.rend(); ++move) {
        const FileDescriptor from = descend(m_above, move->directory.toStdString(), open);
        const FileDescriptor to = descend(m_root, move->directory.toStdString(), open);
        const char* name = move->name.constData();
        if (from && to)
            (void)renameat2(from.number(), name, to.number(), name, move->isExchange ? RENAME_EXCHANGE : 0);
    }
    m_moves.clear();
}

} // namespace jsapi
