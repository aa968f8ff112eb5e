#include "tests/paths/world.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// A world that is not as the tests expect it must not let them pass.
void require(bool made, const char* what)
{
    if (made)
        return;
    std::perror(what);
    std::abort();
}

class Directory {
public:
    Directory(int at, const char* name)
        : m_fd(openat(at, name, O_PATH | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~Directory()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    int fd() const { return m_fd; }

private:
    int m_fd;
};

/// Makes `depth` directories with long names in each other, and in the last a link if it has a name.
void makeDeep(int at, int depth, const char* link, const std::string& target)
{
    if (depth == 0) {
        require(!link || symlinkat(target.c_str(), at, link) == 0, link);
        return;
    }
    const std::string name(200, 'n');
    require(mkdirat(at, name.c_str(), 0700) == 0, "long directory");
    makeDeep(Directory(at, name.c_str()).fd(), depth - 1, link, target);
}

std::string deepNames(int depth)
{
    std::string names;
    for (; depth > 0; --depth)
        names += std::string(200, 'n') + (depth > 1 ? "/" : "");
    return names;
}

/// Where a path leads; broken links lead to what they name. Empty when nothing could be opened there.
std::string placeOf(fs::path path)
{
    for (int links = 0; links <= 40; ++links) {
        std::error_code error;
        const fs::path place = fs::weakly_canonical(path, error);
        if (error)
            return {};
        // Only behind the part that is there can a link be left: one that is broken.
        fs::path reached;
        auto name = place.begin();
        while (name != place.end() && !fs::is_symlink(fs::symlink_status(reached / *name, error)))
            reached /= *name++;
        if (name == place.end())
            return place.string();
        path = reached / fs::read_symlink(reached / *name);
        while (++name != place.end())
            path /= *name;
    }
    return {};
}

bool liesIn(const std::string& path, const std::string& directory)
{
    return path == directory || path.compare(0, directory.size() + 1, directory + '/') == 0;
}

void list(int at, const std::string& above, std::vector<std::string>& lines)
{
    const int fd = openat(at, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* directory = fdopendir(fd);
    require(directory, above.c_str());
    while (const dirent* entry = readdir(directory)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        struct stat status = {};
        require(fstatat(fd, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0, name.c_str());
        lines.push_back(above + name + ' ' + std::to_string(status.st_ino) + ' '
            + std::to_string(status.st_mode) + ' ' + std::to_string(status.st_size) + ' '
            + std::to_string(status.st_mtim.tv_sec) + '.' + std::to_string(status.st_mtim.tv_nsec));
        if (S_ISDIR(status.st_mode))
            list(Directory(fd, name.c_str()).fd(), above + name + '/', lines);
    }
    closedir(directory);
}

} // namespace

PathWorld::PathWorld()
{
    require(m_directory.isValid(), "temporary directory");
    const QDir root(this->root());
    for (const char* name : { "open", "open/deep/er", "closed/deep/er", "closed-not", "closedness", "CLOSED",
             "plugins/pool", "store", "holder/in/shut", "\u00fcber \u4e2d \U0001f512", "...", "deep" })
        require(root.mkpath(QString::fromUtf8(name)), name);
    for (const char* name : { "open/file", "closed/file", "plugins/file" }) {
        QFile file(root.filePath(QString::fromUtf8(name)));
        require(file.open(QIODevice::WriteOnly) && file.write("text") == 4, name);
    }

    const Directory here(AT_FDCWD, QFile::encodeName(this->root()).constData());
    require(mkfifoat(here.fd(), "open/pipe", 0600) == 0, "pipe");
    const auto link = [&](const std::string& target, const std::string& name) {
        require(symlinkat(target.c_str(), here.fd(), name.c_str()) == 0, name.c_str());
    };
    const std::string base = QFile::encodeName(this->root()).toStdString();
    // "moved" is a closed directory that is a link.
    // clang-format off
    const std::pair<std::string, const char*> links[] = {
        { "store", "moved" }, { base + "/closed", "open/absolute" },
        { "../closed/deep", "open/relative" }, { "relative/er", "open/chain" },
        { "../closed/file", "open/to-file" }, { "../closed/not-there/yet", "open/broken" },
        { "nowhere", "open/broken-open" }, { "missing/../../closed", "open/past-nothing" },
        { "../closed/../open", "open/around" }, { "../plugins", "open/plugins" },
        { "../later", "open/later" }, { "../store", "open/store" }, { "..", "open/up" },
        { "/", "open/slash" }, { "loop", "open/loop" }, { "pong", "open/ping" },
        { "ping", "open/pong" }, { "../closed", "open/?" }, { "../closed", "open/new\nline" },
        { "../closed", "open/\u00e4 \u4e2d \U0001f512" }, { "../open", "closed/out" },
        { "../open/file", "closed/out-file" }, { "../open", "plugins/out" },
    };
    // clang-format on
    for (const auto& [target, name] : links)
        link(target, name);
    link("../closed", "open/l40");
    const auto numbered = [](std::string name, int number) { return name += std::to_string(number); };
    for (int i = 39; i >= 0; --i)
        link(numbered("l", i + 1), numbered("open/l", i));
    // "deep/one/two/in" is closed and can be opened, though the way without links has more bytes than a path
    // may have.
    makeDeep(Directory(here.fd(), "deep").fd(), 15, "two", deepNames(15));
    link(deepNames(15), "deep/one");
    makeDeep(Directory(here.fd(), "deep/one").fd(), 15, "in", base + "/closed");

    QStringList closed = blacklisted();
    closed.append(plugins());
    for (const QString& path : closed) {
        const std::string text = QFile::encodeName(path).toStdString();
        struct stat status = {};
        stat(text.c_str(), &status);
        m_closed.push_back({ text, placeOf(text), { status.st_dev, status.st_ino } });
    }
}

PathWorld::~PathWorld()
{
    // QTemporaryDir gives up on paths that are too long for the system.
    std::error_code error;
    fs::remove_all(QFile::encodeName(root()).toStdString(), error);
}

QStringList PathWorld::blacklisted() const
{
    QStringList directories;
    for (const char* name :
        { "@/closed", "@/moved", "@/later", "@/holder/in/shut", "@/\u00fcber \u4e2d \U0001f512" })
        directories << placed(QString::fromUtf8(name));
    return directories;
}

std::string PathWorld::trespass(const QString& path) const
{
    const std::string given = QFile::encodeName(path).toStdString();
    // By its text, as whoever wrote it reads it.
    const std::string text = fs::path(given).lexically_normal().string();
    const std::string place = placeOf(given);
    for (const Closed& closed : m_closed) {
        if (liesIn(text, closed.text))
            return "its text lies in " + closed.text;
        if (!place.empty() && liesIn(place, closed.place))
            return "leads to " + place;
    }
    // By where the system gets to, whatever it is called: the entry's directory and the entry.
    for (const std::string& opened : { fs::path(text).parent_path().string(), text }) {
        int fd = open(opened.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        Id below;
        while (fd >= 0) {
            struct stat status = {};
            require(fstat(fd, &status) == 0, "fstat");
            const Id id(status.st_dev, status.st_ino);
            const auto isIt = [&id](const Closed& closed) { return closed.id == id; };
            if (std::any_of(m_closed.begin(), m_closed.end(), isIt)) {
                close(fd);
                return "the system gets into a closed directory by " + opened;
            }
            const int parent = id == below ? -1 : openat(fd, "..", O_PATH | O_DIRECTORY | O_CLOEXEC);
            close(fd);
            fd = parent;
            below = id;
        }
    }
    return {};
}

bool PathWorld::holds(const QString& path) const
{
    // The entry itself may be a link, which leads elsewhere.
    const std::string above = fs::path(QFile::encodeName(path).toStdString()).parent_path().string();
    return liesIn(placeOf(above), placeOf(QFile::encodeName(root()).toStdString()));
}

std::string PathWorld::findLoss() const
{
    struct stat status = {};
    for (const Closed& closed : m_closed) {
        status = {};
        stat(closed.text.c_str(), &status);
        if (closed.id != Id() && closed.id != Id(status.st_dev, status.st_ino))
            return closed.text;
    }
    const std::string pipe = QFile::encodeName(placed(QStringLiteral("@/open/pipe"))).toStdString();
    return lstat(pipe.c_str(), &status) == 0 && !S_ISFIFO(status.st_mode) ? pipe : "";
}

std::string PathWorld::listing() const
{
    std::vector<std::string> lines;
    list(Directory(AT_FDCWD, QFile::encodeName(root()).constData()).fd(), "/", lines);
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    return text;
}

void makeDeepTree(const QString& path, int depth)
{
    require(QDir().mkpath(path), "deep tree");
    makeDeep(Directory(AT_FDCWD, QFile::encodeName(path).constData()).fd(), depth, nullptr, {});
}
