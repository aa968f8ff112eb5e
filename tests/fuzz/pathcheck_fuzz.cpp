// Searches for a path that gets a page into a closed directory.
//
// An input is text: the path in the first line, then variables as NAME=value, a line each. '@' stands for the
// data directory, "\u" and four hexadecimal digits for one unit of UTF-16.
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "local/pathcheck.h"
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

PathWorld* world = nullptr;
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

QString expandPath(const QString& path)
{
    return path;
}

} // namespace profile

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("LC_ALL", "C.UTF-8", 1);
    static PathWorld made;
    world = &made;
    auto profile = std::make_shared<profile::Profile>();
    profile->directories.blacklistedDownloads = made.blacklisted();
    profile->directories.pluginDownloads = made.plugins();
    current = std::move(profile);
    for (const auto& [name, value] :
        { std::pair("P_ROOT", "@"), std::pair("P_STEPS", "@/open/.."), std::pair("P_DOT", "@/open/."),
            std::pair("P_LINK", "@/open/absolute"), std::pair("P_EMPTY", "") })
        qputenv(name, QFile::encodeName(made.placed(QString::fromLatin1(value))));
    // For the ways through /proc.
    QDir::setCurrent(made.placed(QStringLiteral("@/closed/deep")));
    dup2(open(".", O_RDONLY | O_CLOEXEC), 99);
    listed = made.listing();
    return 0;
}

namespace {

std::optional<QString> resolve(const QString& given)
{
    const auto path = jsapi::WritablePath::check(given);
    return path ? std::optional(path->string()) : std::nullopt;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    QList<QByteArray> lines =
        QByteArray(reinterpret_cast<const char*>(bytes), static_cast<int>(size)).split('\n');
    const QString given = decoded(lines.takeFirst());
    const Variables variables(lines);

    if (const std::optional<QString> resolved = resolve(given)) {
        require(resolved->startsWith(QLatin1Char('/')), "a path that is not absolute", given, *resolved);
        require(!resolved->contains(QChar::Null), "a path with a NUL", given, *resolved);
        require(QFile::decodeName(QFile::encodeName(*resolved)) == *resolved,
            "a path that no file name spells", given, *resolved);
        require(isClean(*resolved), "a path that is not clean", given, *resolved);
        const std::string trespass = world->trespass(*resolved);
        require(trespass.empty(), "a way into a closed directory", given, *resolved, trespass);
        const std::optional<QString> again = resolve(*resolved);
        require(again == resolved, "a path that checks otherwise when checked again", given, *resolved,
            again ? again->toStdString() : "refused");
    }
    static int runs = 0;
    if (++runs % RunsBetweenListings == 0)
        require(world->listing() == listed, "a change on disk, made by one of the last inputs", given, given);
    return 0;
}
