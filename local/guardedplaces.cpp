#include "local/guardedplaces.h"

#include "local/pathcheck.h"
#include "local/treewalk.h"

#include <QDir>
#include <QFile>
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
    const auto goOn = [&ahead](const fs::path& steps) {
        ahead.insert(ahead.begin(), steps.begin(), steps.end());
    };
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

/// False too for a path that is no text: the suite can have no name for it.
bool isClosed(const QByteArray& path)
{
    const QString decoded = QFile::decodeName(path);
    return QFile::encodeName(decoded) == path && isClosedToPages(decoded);
}

/// Looks for closed places behind links: the suite's names for them may go through any number of those.
class LinkSearch {
public:
    /// True too when all links together lead to more than can be looked through.
    bool leadsToClosedPlace(const QByteArray& link)
    {
        std::set<FileId> known;
        std::deque<QByteArray> ahead { link };
        while (!ahead.empty()) {
            const QByteArray path = ahead.front();
            ahead.pop_front();
            const auto directory = lookAt(AT_FDCWD, path, true);
            if (!directory || !S_ISDIR(directory->st_mode) || !known.insert(identify(*directory)).second)
                continue;
            std::error_code error;
            for (fs::directory_iterator entry(path.toStdString(), error), end; entry != end && !error;
                 entry.increment(error)) {
                ahead.push_back(QByteArray::fromStdString(entry->path().native()));
                if (++m_seen > MaxBehindLinks || isClosed(ahead.back()))
                    return true;
            }
        }
        return false;
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
    bool isGuarded(int directory) const
    {
        struct statx facts { };
        return statx(directory, "", AT_EMPTY_PATH, STATX_INO, &facts) != 0
            || (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT)
            || m_wayHome.count({ makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino }) != 0;
    }

private:
    bool visit(int directory, const char* name, bool isLink) override
    {
        const QByteArray path = m_path + '/' + name;
        if (isLink) {
            const auto facts = lookAt(directory, name);
            if (!facts || m_wayHome.count(identify(*facts)) != 0 || m_links.leadsToClosedPlace(path))
                return false;
        }
        return !isClosed(path);
    }
    bool enter(int directory, const char* name) override
    {
        m_path.append('/').append(name);
        return !isGuarded(directory) && !isClosed(m_path);
    }
    bool leave(int, const char* name) override
    {
        m_path.chop(static_cast<int>(qstrlen(name)) + 1);
        return true;
    }
    bool skip(int, const char*) override { return false; }

    QByteArray m_path; ///< of the directory that is shown
    const std::set<FileId> m_wayHome;
    LinkSearch m_links;
};

} // namespace

bool holdsGuardedPlace(const FileDescriptor& directory)
{
    const QByteArray path = directory.realPath();
    if (path.isEmpty())
        return true;
    GuardedPlaceSearch search(path);
    return search.isGuarded(directory.number()) || !walkTree(directory, search);
}

bool leadsToGuardedPlace(const QString& link)
{
    const QByteArray path = QFile::encodeName(link);
    const auto facts = lookAt(AT_FDCWD, path);
    return !facts || traceWayHome().count(identify(*facts)) != 0 || LinkSearch().leadsToClosedPlace(path);
}

} // namespace jsapi
