#include "host/krt/pathinside.h"

#include "host/profile/directories.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <climits>
#include <deque>
#include <fcntl.h>
#include <filesystem>
#include <linux/magic.h>
#include <optional>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace krt {

namespace {

namespace fs = std::filesystem;

using Names = std::deque<std::string>;

/// The system follows no more; a path with more of them can not be opened.
constexpr int MaxLinks = 40;
constexpr std::chrono::milliseconds LookInterval(50);

Names splitPath(const std::string& path)
{
    Names names;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end > begin && path.compare(begin, end - begin, ".") != 0)
            names.emplace_back(path, begin, end - begin);
        begin = end + 1;
    }
    return names;
}

/// A file that is known and not opened for use: nothing happens to a pipe or a device.
class Known {
public:
    explicit Known(int directory, const char* name, int flags = O_NOFOLLOW)
        : m_fd(openat(directory, name, O_PATH | O_CLOEXEC | flags))
    {
        struct statx found = {};
        if (m_fd < 0 || statx(m_fd, "", AT_EMPTY_PATH, STATX_TYPE | STATX_INO | STATX_BTIME, &found) != 0)
            return;
        m_mode = found.stx_mode;
        const bool knowsTime = found.stx_mask & STATX_BTIME;
        m_id.emplace((std::uint64_t(found.stx_dev_major) << 32) | found.stx_dev_minor, found.stx_ino,
            knowsTime ? found.stx_btime.tv_sec : 0, knowsTime ? found.stx_btime.tv_nsec : 0);
    }
    ~Known()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    Known(Known&& other) noexcept { swap(other); }
    Known& operator=(Known&& other) noexcept
    {
        swap(other);
        return *this;
    }

    int fd() const { return m_fd; }
    const std::optional<FileId>& id() const { return m_id; }
    bool isDirectory() const { return S_ISDIR(m_mode); }
    bool isLink() const { return S_ISLNK(m_mode); }

    /// Of a link.
    std::string target() const { return readLink(m_fd, ""); }
    /// Where it is now; empty when the system does not say.
    std::string path() const { return readLink(AT_FDCWD, ("/proc/self/fd/" + std::to_string(m_fd)).c_str()); }

private:
    static std::string readLink(int directory, const char* name)
    {
        char text[PATH_MAX];
        const ssize_t size = readlinkat(directory, name, text, sizeof(text));
        return { text, size > 0 ? static_cast<std::size_t>(size) : 0 };
    }

    void swap(Known& other)
    {
        std::swap(m_fd, other.m_fd);
        std::swap(m_mode, other.m_mode);
        std::swap(m_id, other.m_id);
    }

    int m_fd = -1;
    mode_t m_mode = 0;
    std::optional<FileId> m_id;
};

/// The links of /proc lead to what a process has there, whatever they read: its root may be another one.
bool isInProc(const Known& directory)
{
    struct statfs found = {};
    return fstatfs(directory.fd(), &found) == 0 && found.f_type == PROC_SUPER_MAGIC;
}

/// What a directory lies in and the directory itself, from the root.
std::deque<std::optional<FileId>> climb(const Known& directory)
{
    std::deque<std::optional<FileId>> way { directory.id() };
    for (Known above(directory.fd(), ".."); above.id() && above.id() != way.front();
         above = Known(above.fd(), ".."))
        way.push_front(above.id());
    return way;
}

/// Follows an absolute path from the root as the system does, and on by its names where nothing is left. The
/// visitor is notified of each step: restart (at the root), enter, leave, and before a step with the names ahead
/// reach; passLink, with the link's name, before the link is followed.
template <typename Visitor> void follow(const std::string& path, Visitor& visitor)
{
    Names ahead = splitPath(path);
    Known here(AT_FDCWD, "/");
    int missing = 0; // how many names have been entered since `here`
    int links = 0;
    visitor.restart(here.id());
    while (!ahead.empty()) {
        visitor.reach(ahead);
        const std::string name = std::move(ahead.front());
        ahead.pop_front();
        if (name == "..") {
            if (missing > 0)
                --missing;
            else
                here = Known(here.fd(), "..");
            visitor.leave();
            continue;
        }
        if (missing > 0) {
            ++missing;
            visitor.enter(name, std::nullopt);
            continue;
        }
        Known next(here.fd(), name.c_str());
        if (next.isLink() && ++links <= MaxLinks) {
            visitor.passLink(name);
            if (isInProc(here)) {
                Known place(here.fd(), name.c_str(), 0);
                if (place.isDirectory()) {
                    const auto way = climb(place);
                    visitor.restart(way.front());
                    std::for_each(way.begin() + 1, way.end(), [&](const auto& id) { visitor.enter({}, id); });
                    here = std::move(place);
                    continue;
                }
            }
            const std::string target = next.target();
            const Names steps = splitPath(target);
            ahead.insert(ahead.begin(), steps.begin(), steps.end());
            if (target.rfind('/', 0) == 0) {
                here = Known(AT_FDCWD, "/");
                visitor.restart(here.id());
            }
            continue;
        }
        visitor.enter(name, next.id());
        if (next.isDirectory())
            here = std::move(next);
        else
            missing = 1;
    }
    visitor.reach(ahead);
}

/// Whether a path is absolute, not the root, and has neither empty names nor steps.
bool isClean(const std::string& path)
{
    bool clean = path.size() > 1 && path.front() == '/' && path.back() != '/';
    for (std::size_t slash = 0; clean && slash != std::string::npos; slash = path.find('/', slash + 1)) {
        const std::string_view name = std::string_view(path).substr(slash + 1, 3);
        clean = !name.starts_with('/') && name != "." && !name.starts_with("./") && name != ".."
            && !name.starts_with("../");
    }
    return clean;
}

bool isParentStep(const std::string& name)
{
    return name == "..";
}

} // namespace

/// Adds the ways of one place while its path is followed.
class Places::Recorder {
public:
    Recorder(Places& places, Kind kind, bool isBeginning = false)
        : m_places(places)
        , m_kind(kind)
        , m_isBeginning(isBeginning)
    {
    }

    void restart(const std::optional<FileId>& root) { m_ids.assign(1, root); }
    void enter(const std::string&, const std::optional<FileId>& id) { m_ids.push_back(id); }
    void leave()
    {
        if (m_ids.size() > 1)
            m_ids.pop_back();
    }
    void passLink(const std::string&) { }
    void reach(const Names& ahead)
    {
        if (!m_ids.back() || std::any_of(ahead.begin(), ahead.end(), isParentStep))
            return;
        std::vector<Way>& ways = m_places.m_ways[*m_ids.back()];
        Way way { { ahead.begin(), ahead.end() }, m_kind, m_isBeginning && !ahead.empty() };
        if (way.isBeginning)
            way.names.back().pop_back(); // the '*'
        if (std::find(ways.begin(), ways.end(), way) == ways.end())
            ways.push_back(way);
    }

private:
    Places& m_places;
    Kind m_kind;
    bool m_isBeginning;
    std::vector<std::optional<FileId>> m_ids;
};

/// How far the ways go on with one more name.
struct Places::Station {
    bool inside = false; ///< what lies above
    bool member = false;
    bool exception = false;
    std::vector<std::pair<const Way*, std::size_t>> begun; ///< and how many names have been met

    bool isInside() const { return member || (inside && !exception); }
    void meet(const Way* way, std::size_t met)
    {
        if (met < way->names.size())
            begun.emplace_back(way, met);
        else
            (way->kind == Kind::Member ? member : exception) = true;
    }
};

Places::Station Places::step(
    const Station& from, const std::string& name, const std::optional<FileId>& id) const
{
    Station next;
    next.inside = from.isInside();
    for (const auto& [way, met] : from.begun) {
        const std::string& wanted = way->names[met];
        const bool mayGoOn = way->isBeginning && met + 1 == way->names.size();
        if (mayGoOn ? name.starts_with(wanted) : name == wanted)
            next.meet(way, met + 1);
    }
    if (const auto found = id ? m_ways.find(*id) : m_ways.end(); found != m_ways.end()) {
        for (const Way& way : found->second)
            next.meet(&way, 0);
    }
    return next;
}

/// Compares a path that is followed with all ways.
class Places::Matcher {
public:
    explicit Matcher(const Places& places)
        : m_places(places)
    {
    }

    void restart(const std::optional<FileId>& root) { m_stations.assign(1, m_places.step({}, {}, root)); }
    void enter(const std::string& name, const std::optional<FileId>& id)
    {
        m_stations.push_back(m_places.step(m_stations.back(), name, id));
    }
    void leave()
    {
        if (m_stations.size() > 1)
            m_stations.pop_back();
    }
    void passLink(const std::string& name)
    {
        m_throughLinkInside =
            m_throughLinkInside || m_places.step(m_stations.back(), name, std::nullopt).isInside();
    }
    void reach(const Names&) { }

    bool isInside() const { return m_throughLinkInside || m_stations.back().isInside(); }

private:
    const Places& m_places;
    std::vector<Station> m_stations;
    bool m_throughLinkInside = false;
};

void Places::add(const QString& path, Kind kind)
{
    if (!QDir::isAbsolutePath(path))
        return;
    Recorder recorder(*this, kind);
    follow(QFile::encodeName(path).toStdString(), recorder);
}

void Places::addBeginning(const QString& path)
{
    Recorder recorder(*this, Kind::Member, true);
    follow(QFile::encodeName(path).toStdString(), recorder);
    // Links among them lead elsewhere. One that leads to the directory itself, or above it, would close everything.
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    const std::string beginning = QFile::encodeName(path.mid(slash + 1).chopped(1)).toStdString();
    const QString directory = path.left(slash + 1);
    // Not by QDir, which asks what every entry is: there may be many, and they are looked at often.
    std::error_code error;
    fs::directory_iterator entry(QFile::encodeName(directory).toStdString(), error);
    for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!name.starts_with(beginning))
            continue;
        const QString place = QFile::decodeName(entry->path().c_str());
        std::error_code unknown;
        if (!(entry->is_symlink(unknown) && isPathInside(directory, place)))
            add(place);
    }
}

bool Places::contain(const QString& path) const
{
    if (!QDir::isAbsolutePath(path) || m_ways.empty())
        return false;
    const std::string clean = QFile::encodeName(QDir::cleanPath(path)).toStdString();
    if (clean.size() >= PATH_MAX)
        return true;
    Matcher asTheSystem(*this);
    follow(QFile::encodeName(path).toStdString(), asTheSystem);
    if (asTheSystem.isInside())
        return true;
    Matcher byText(*this);
    byText.restart(Known(AT_FDCWD, "/").id());
    for (const std::string& name : splitPath(clean))
        byText.enter(name, std::nullopt);
    if (byText.isInside() || !path.contains(QLatin1String("..")))
        return byText.isInside();
    Matcher cleaned(*this);
    follow(clean, cleaned);
    return cleaned.isInside();
}

bool isPathInside(const QString& path, const QString& directory)
{
    Places places;
    places.add(directory);
    return places.contain(path);
}

bool ProfilePlaces::contain(const QString& path, const QStringList& entries, const QStringList& exceptions)
{
    Source source { entries, exceptions, profile::expandPath(QStringLiteral("${DATA}")), qgetenv("HOME"),
        qgetenv("PATH") };
    const std::lock_guard lock(m_mutex);
    const bool isOther = source != m_source;
    if (isOther) {
        m_source = std::move(source);
        m_first = {};
        look(m_first);
    }
    if (isOther || std::chrono::steady_clock::now() - m_looked > LookInterval) {
        m_trail.reset();
        m_now = m_first;
        look(m_now);
        m_looked = std::chrono::steady_clock::now(); // however long it took
    }
    const auto known = containsOnTrail(path);
    return known ? *known : m_now.contain(path);
}

/// The directory of the last path: who removes a tree asks for one after the other.
struct ProfilePlaces::Trail {
    std::string path; ///< without a slash at its end
    Known directory;
    Places::Station station;

    /// Whether another process has not moved it away, or put a link in its place.
    bool isThere() const { return path.empty() || directory.path() == path; }
};

ProfilePlaces::ProfilePlaces() = default;
ProfilePlaces::~ProfilePlaces() = default;

/// Nothing for a path with links or parent steps, which needs its whole way.
std::optional<bool> ProfilePlaces::containsOnTrail(const QString& path)
{
    const std::string name = QFile::encodeName(path).toStdString();
    if (name.size() >= PATH_MAX || !isClean(name))
        return std::nullopt;
    if (!m_trail || !name.starts_with(m_trail->path + '/') || !m_trail->isThere()) {
        Known root(AT_FDCWD, "/");
        Places::Station station = m_now.step({}, {}, root.id());
        m_trail = std::make_unique<Trail>(Trail { {}, std::move(root), std::move(station) });
    }
    Names ahead = splitPath(name.substr(m_trail->path.size()));
    while (!ahead.empty() && ahead.front() != "..") {
        Known next(m_trail->directory.fd(), ahead.front().c_str());
        if (next.isLink() || (ahead.size() > 1 && !next.isDirectory()))
            break;
        Places::Station station = m_now.step(m_trail->station, ahead.front(), next.id());
        if (ahead.size() == 1)
            return station.isInside();
        m_trail->path += '/' + ahead.front();
        m_trail->directory = std::move(next);
        m_trail->station = std::move(station);
        ahead.pop_front();
    }
    return std::nullopt;
}

void ProfilePlaces::look(Places& places) const
{
    for (const QString& entry : m_source.entries) {
        if (entry == QLatin1String("${PATH}")) {
            for (const QByteArray& directory : m_source.programs.split(':'))
                places.add(QFile::decodeName(directory));
        } else if (entry.endsWith(QLatin1Char('*')))
            places.addBeginning(profile::expandPath(entry));
        else
            places.add(profile::expandPath(entry));
    }
    for (const QString& exception : m_source.exceptions)
        places.add(profile::expandPath(exception), Places::Kind::Exception);
}

} // namespace krt
