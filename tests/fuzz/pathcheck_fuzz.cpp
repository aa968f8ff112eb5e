// Searches for a path that gets a page into a closed directory, or cuts the way to one.
//
// An input is text: the path in the first line, then variables as NAME=value, a line each. A line of another
// path with a sign in front changes something there, after which the first is checked again: "-PATH" removes a
// directory, "!PATH" a file, "+PATH" makes a directory, ">PATH" copies a file over what is there. '@' stands for
// the data directory, "\u" and four hexadecimal digits for one unit of UTF-16.
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "local/treechanges.h"
#include "tests/paths/world.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>

namespace {

std::unique_ptr<PathWorld> world;
std::string listed;
std::shared_ptr<const profile::Profile> current;

/// Runs between two looks at the disk, which take longer than a check.
constexpr int RunsBetweenListings = 5000;

QString decoded(const QByteArray& line)
{
    QString text = QString::fromUtf8(line);
    for (int at = 0; (at = text.indexOf(QLatin1String("\\u"), at)) >= 0; ++at) {
        bool isNumber = false;
        const ushort unit = text.mid(at + 2, 4).toUShort(&isNumber, 16);
        if (isNumber && text.size() >= at + 6)
            text.replace(at, 6, QChar(unit));
    }
    return world->placed(text);
}

/// No empty names, dots or steps. Steps above the root stay, they lead nowhere.
bool isClean(const QString& path)
{
    QStringList names = path.mid(1).split(QLatin1Char('/'));
    while (!names.isEmpty() && names.first() == QLatin1String(".."))
        names.removeFirst();
    return path == QLatin1String("/")
        || !(names.contains(QString()) || names.contains(QStringLiteral("."))
            || names.contains(QStringLiteral("..")));
}

/// Variables of one input; they are gone when it is done. What the process started with stays as it is.
class Variables {
public:
    explicit Variables(const QList<QByteArray>& lines)
    {
        for (const QByteArray& line : lines) {
            const int equals = line.indexOf('=');
            const QByteArray name = line.left(equals);
            if (equals <= 0 || name.contains('\0')
                || (qEnvironmentVariableIsSet(name) && !m_names.contains(name)))
                continue;
            qputenv(name, QFile::encodeName(decoded(line.mid(equals + 1))));
            m_names.append(name);
        }
    }
    ~Variables()
    {
        for (const QByteArray& name : m_names)
            qunsetenv(name);
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

private:
    QList<QByteArray> m_names;
};

void require(
    bool holds, const char* what, const QString& given, const QString& resolved, const std::string& why = {})
{
    if (holds)
        return;
    const auto readable = [](const QString& path) {
        QString text;
        for (const QChar unit : path) {
            const bool plain = unit.isPrint() && !unit.isSurrogate();
            text +=
                plain ? QString(unit) : QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        }
        return text.replace(world->root(), QStringLiteral("@")).toStdString();
    };
    std::fprintf(stderr, "FOUND %s\n  path     %s\n  resolved %s\n  %s\n", what, readable(given).c_str(),
        readable(resolved).c_str(), why.c_str());
    std::abort();
}

} // namespace

namespace profile {

std::shared_ptr<const Profile> current()
{
    return ::current;
}

QString dataDirectory()
{
    return world->root();
}

QString expandPath(const QString& path)
{
    return path;
}

} // namespace profile

namespace {

/// A world that nothing has been changed in.
void makeWorld()
{
    world = std::make_unique<PathWorld>();
    auto profile = std::make_shared<profile::Profile>();
    profile->directories.blacklistedDownloads = world->blacklisted();
    profile->directories.pluginDownloads = world->plugins();
    current = std::move(profile);
    for (const auto& [name, value] :
        { std::pair("P_ROOT", "@"), std::pair("P_STEPS", "@/open/.."), std::pair("P_DOT", "@/open/."),
            std::pair("P_LINK", "@/open/absolute"), std::pair("P_EMPTY", "") })
        qputenv(name, QFile::encodeName(world->placed(QString::fromLatin1(value))));
    // For the ways through /proc.
    QDir::setCurrent(world->placed(QStringLiteral("@/closed/deep")));
    dup2(open(".", O_RDONLY | O_CLOEXEC), 99);
    listed = world->listing();
}

/// Whether a path may be written to; where that leads is judged.
bool checkPath(const QString& given)
{
    const auto path = jsapi::WritablePath::check(given);
    if (!path)
        return false;
    const QString& resolved = path->string();
    require(resolved.startsWith(QLatin1Char('/')), "a path that is not absolute", given, resolved);
    require(!resolved.contains(QChar::Null), "a path with a NUL", given, resolved);
    require(QFile::decodeName(QFile::encodeName(resolved)) == resolved, "a path that no file name spells",
        given, resolved);
    require(isClean(resolved), "a path that is not clean", given, resolved);
    const std::string trespass = world->trespass(resolved);
    require(trespass.empty(), "a way into a closed directory", given, resolved, trespass);
    const auto again = jsapi::WritablePath::check(resolved);
    require(again && again->string() == resolved, "a path that checks otherwise when checked again", given,
        resolved, again ? again->string().toStdString() : "refused");
    return true;
}

bool isChange(const QByteArray& line)
{
    return !line.isEmpty() && QByteArray("-!+>").contains(line.front());
}

/// Changes what a line names. False when pages may not.
bool change(const QByteArray& line)
{
    const QString given = decoded(line.mid(1));
    if (!checkPath(given))
        return false;
    const auto path = jsapi::WritablePath::check(given);
    const auto source = jsapi::openRegularFile(world->placed(QStringLiteral("@/open/file")));
    // What lies outside of the world is not for trying.
    if (!path->string().startsWith(world->root() + QLatin1Char('/')) || !world->holds(path->string()))
        return false;
    switch (line.front()) {
    case '-':
        jsapi::removeTree(*path);
        break;
    case '!':
        jsapi::removeFile(*path);
        break;
    case '+':
        jsapi::makeDirectory(*path);
        break;
    default:
        if (source && jsapi::replaceFile(source, *path) != jsapi::Replacement::Done)
            jsapi::copyFile(source, *path);
    }
    const std::string lost = world->findLoss();
    require(lost.empty(), "a change that takes away what is closed", given, path->string(), lost);
    return true;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("LC_ALL", "C.UTF-8", 1);
    makeWorld();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    QList<QByteArray> lines =
        QByteArray(reinterpret_cast<const char*>(bytes), static_cast<int>(size)).split('\n');
    const QString given = decoded(lines.takeFirst());
    const Variables variables(lines);

    checkPath(given);
    bool isChanged = false;
    for (const QByteArray& line : lines)
        isChanged = (isChange(line) && change(line)) || isChanged;
    if (isChanged)
        checkPath(given);
    static int runs = 0;
    if (++runs % RunsBetweenListings == 0 && !isChanged)
        require(world->listing() == listed, "a change on disk, made by one of the last inputs", given, given);
    if (isChanged && world->listing() != listed)
        makeWorld();
    return 0;
}
