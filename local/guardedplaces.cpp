#include "local/guardedplaces.h"

#include "local/pathcheck.h"
#include "local/treewalk.h"

#include <QDir>
#include <QFile>
#include <climits>
#include <deque>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/sysmacros.h>

namespace jsapi {

namespace {

namespace fs = std::filesystem;

/// The system follows no more.
constexpr int MaxLinks = 40;
/// How many entries behind links are looked at: a fraction of a second.
constexpr int MaxBehindLinks = 20'000;

/// All directories and links on the way to a directory, the root and itself included.
std::set<FileId> traceWay(const QByteArray& path)
{
    std::set<FileId> way;
    std::deque<std::string> ahead;
    const auto goOn = [&ahead](
                          const fs::path& steps) { ahead.insert(ahead.begin(), steps.begin(), steps.end()); };
    FileDescriptor here;
    int links = 0;
    const auto step = [&](const std::string& name) {
        const bool isRoot = name == "/";
        const int above = isRoot ? AT_FDCWD : here.number();
        FileDescriptor next(openat(above, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat facts { };
        if (!next || fstat(next.number(), &facts) != 0)
            return false;
        way.insert(identify(facts));
        if (!S_ISLNK(facts.st_mode)) {
            here = std::move(next);
            return true;
        }
        const QByteArray target = readLink(above, name.c_str());
        goOn(target.toStdString());
        return ++links <= MaxLinks && !target.isEmpty();
    };
    goOn(path.toStdString());
    while (!ahead.empty()) {
        const std::string name = ahead.front();
        ahead.pop_front();
        if (!name.empty() && !step(name))
            break;
    }
    return way;
}

std::set<FileId> traceWayHome()
{
    return traceWay(QFile::encodeName(QDir::homePath()));
}

/// Whether a path is closed. False too for one that is no text: the suite can have no name for it.
bool isClosed(const QByteArray& path)
{
    const QString decoded = QFile::decodeName(path);
    return QFile::encodeName(decoded) == path && isClosedToPages(decoded);
}

/// Looks for closed places behind links: the suite's name for one may go through the link.
class LinkSearch {
public:
    /// True too when all links together lead to more than can be looked through. What further links there lead
    /// to is not looked at.
    bool leadsToClosedPlace(const QByteArray& link)
    {
        const auto facts = lookAt(AT_FDCWD, link, true);
        if (!facts || !S_ISDIR(facts->st_mode))
            return false;
        std::error_code error;
        fs::recursive_directory_iterator entry(
            link.toStdString() + '/', fs::directory_options::skip_permission_denied, error);
        for (const fs::recursive_directory_iterator end; entry != end && !error; entry.increment(error)) {
            const QByteArray path = QByteArray::fromStdString(entry->path().native());
            if (++m_seen > MaxBehindLinks || path.size() >= PATH_MAX
                || (!entry->is_symlink(error) && isClosed(path)))
                return true;
        }
        return bool(error);
    }

private:
    int m_seen = 0;
};

class GuardedPlaceSearch final : public TreeVisitor {
public:
    explicit GuardedPlaceSearch(QByteArray path)
        : m_path(std::move(path))
        , m_wayHome(traceWayHome())
    {
    }

    /// Whether a directory must stay for itself, whatever is in it.
    bool isGuarded(const FileDescriptor& directory) const
    {
        struct statx facts { };
        return statx(directory.number(), "", AT_EMPTY_PATH, STATX_INO, &facts) != 0
            || (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT)
            || m_wayHome.count({ makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino }) != 0;
    }

private:
    bool visit(const FileDescriptor& directory, const char* name, bool isLink) override
    {
        QByteArray path = m_path + '/' + name;
        if (path.size() >= PATH_MAX) // which can not be followed
            path = directory.path() + '/' + name;
        if (isLink) {
            const auto facts = lookAt(directory.number(), name);
            if (!facts || m_wayHome.count(identify(*facts)) != 0 || m_links.leadsToClosedPlace(path))
                return false;
        }
        return !isClosed(path);
    }
    bool enter(const FileDescriptor& directory, const char* name) override
    {
        m_path.append('/').append(name);
        return !isGuarded(directory) && !isClosed(m_path.size() < PATH_MAX ? m_path : directory.path());
    }
    bool leave(const FileDescriptor&, const char* name) override
    {
        m_path.chop(static_cast<int>(qstrlen(name)) + 1);
        return true;
    }
    bool skip(const FileDescriptor&, const char*) override { return false; }

    QByteArray m_path; ///< of the directory that is shown
    const std::set<FileId> m_wayHome;
    LinkSearch m_links;
};

} // namespace

struct GuardedPlaceLook::Private {
    explicit Private(FileDescriptor opened)
        : directory(std::move(opened))
        , path(directory.realPath())
        , search(path)
        , walk(directory, search)
    {
    }

    const FileDescriptor directory;
    const QByteArray path;
    GuardedPlaceSearch search;
    TreeWalk walk;
};

GuardedPlaceLook::GuardedPlaceLook(FileDescriptor directory)
    : d(std::make_unique<Private>(std::move(directory)))
{
}

GuardedPlaceLook::~GuardedPlaceLook() = default;

std::optional<bool> GuardedPlaceLook::step()
{
    if (d->path.isEmpty() || d->search.isGuarded(d->directory))
        return true;
    const TreeWalk::State state = d->walk.step();
    return state == TreeWalk::State::GoesOn ? std::nullopt : std::optional(state == TreeWalk::State::Ended);
}

bool holdsGuardedPlace(const FileDescriptor& directory)
{
    const QByteArray path = directory.realPath();
    if (path.isEmpty())
        return true;
    GuardedPlaceSearch search(path);
    return search.isGuarded(directory) || !walkTree(directory, search);
}

bool leadsToGuardedPlace(const QString& link)
{
    const QByteArray path = QFile::encodeName(link);
    const auto facts = lookAt(AT_FDCWD, path);
    return !facts || traceWayHome().count(identify(*facts)) != 0 || LinkSearch().leadsToClosedPlace(path);
}

} // namespace jsapi
