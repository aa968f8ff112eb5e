#include "host/krt/pathinside.h"
#include "krt/dirs.h"
#include "suite/kpluginconfig.h"
#include "tests/services/fixture.h"
#include "tests/support/rows.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

// Below the data directory, unless they begin with '!'.
constexpr char Inside[] =
    "guarded guarded// guarded/deep/file guarded/no/such/file open/../guarded/x none/../guarded/x "
    "./guarded/./x open/absolute/x open/relative/x open/chain/no/file open/broken "
    "open/relative/../x guarded/out/x guarded/out/../x open/root/../../guarded/x alias/x";
constexpr char Outside[] = "guardedness/file open/file . guarded/../open/x !guarded/x ! !/ open/loop/x";

TEST_F(ServiceTest, PathsAreInsideADirectoryWhereverTheyLead)
{
    QDir root(path(""));
    ASSERT_TRUE(root.mkpath(QStringLiteral("guarded/deep/er")) && root.mkpath(QStringLiteral("open")));
    const auto link = [&](const char* target, const char* name) {
        ASSERT_TRUE(QFile::link(QString::fromUtf8(target), path(name)));
    };
    link(path("guarded").toUtf8(), "open/absolute");
    link("../guarded/deep", "open/relative");
    link("relative/er", "open/chain");
    link("../guarded/not-there/yet", "open/broken");
    link("loop", "open/loop");
    link("/", "open/root");
    link("../open", "guarded/out");
    link("guarded", "alias");

    for (const char* list : { Inside, Outside }) {
        for (const QString& given : QString::fromLatin1(list).split(QLatin1Char(' '))) {
            const QString tested =
                given.startsWith(QLatin1Char('!')) ? given.mid(1) : path("") + QLatin1Char('/') + given;
            for (const char* directory : { "guarded", "alias" })
                EXPECT_EQ(krt::isPathInside(tested, path(directory)), list == Inside)
                    << given.toStdString() << " in " << directory;
        }
    }
    EXPECT_FALSE(krt::isPathInside(path("open/x"), path("op*"))); // a name like others
}

/// Below the data directory; with '!' in front it is open.
void expectClosed(const QString& root, const char* list)
{
    for (const QString& given : QString::fromLatin1(list).split(QLatin1Char(' '))) {
        const bool open = given.startsWith(QLatin1Char('!'));
        EXPECT_EQ(krt::dirs::inBlackDownloadDir(root + QLatin1Char('/') + given.mid(open)), !open)
            << given.toStdString();
    }
}

TEST_F(ServiceTest, ClosedPlacesStayClosedWhereTheyWereAndWhereTheyAre)
{
    useProfile(R"({"directories": {"blacklistedDownloads": ["${DATA}/suite/plugins", "${DATA}/suite/later/on",
                   "${DATA}/rc", "${DATA}/home/.*", "${DATA}/data", "${DATA}/data/docs/keys", "${PATH}"],
                   "officeData": "${DATA}/data/docs", "pluginDownloads": "${DATA}/suite/p"}})");
    QDir root(path(""));
    for (const char* made :
        { "real/plugins/old", "home/.ssh", "store", "new", "data/docs", "target/shown", "programs" })
        ASSERT_TRUE(root.mkpath(QString::fromLatin1(made)));
    ASSERT_TRUE(QFile::link(QStringLiteral("real"), path("suite")));
    ASSERT_TRUE(QFile::link(path("store"), path("home/.link")));
    ASSERT_TRUE(QFile::link(QStringLiteral(".."), path("home/.all"))); // closes no more than itself
    write("rc", "text");
    const QByteArray programs = qgetenv("PATH");
    qputenv("PATH", programs + ':' + QFile::encodeName(path("programs")));
    expectClosed(path(""),
        "suite/plugins real/plugins/x real/later/on/x !real/later !suite !home home/.new home/.ssh/x "
        "!home/shown store/x data data/x data/docs/../x !data/docs !data/docs/x data/docs/keys/x "
        "programs/x !new/x");
    EXPECT_TRUE(kpluginconfig::inPluginDownloadDir(path("real/p/x")));

    // What other processes may change: links on the way, the directories themselves, and other names for them.
    ASSERT_TRUE(QFile::remove(path("suite")) && root.mkpath(QStringLiteral("suite/plugins")));
    ASSERT_TRUE(QFile::rename(path("real/plugins"), path("moved")));
    ASSERT_TRUE(QFile::rename(path("home/.ssh"), path("target/found")));
    ASSERT_EQ(link(qPrintable(path("rc")), qPrintable(path("harmless"))), 0);
    expectClosed(path(""),
        "suite/plugins/x suite/later/on real/later/on/x !suite/x real/plugins/x moved/old/x "
        "target/found/x !target/shown harmless");
    EXPECT_TRUE(kpluginconfig::inPluginDownloadDir(path("real/p/x")));
    ASSERT_TRUE(QFile::remove(path("home/.link")) && QFile::link(path("new"), path("home/.link")));
    while (!krt::dirs::inBlackDownloadDir(path("new/x"))) // once it is looked at again
        usleep(1000);
    expectClosed(path(""), "store/x");

    EXPECT_FALSE(krt::dirs::inBlackDownloadDir(path("target/shown/x")));
    ASSERT_TRUE(QFile::rename(path("target/shown"), path("target/old"))
        && QFile::link(path("data"), path("target/shown")));
    expectClosed(path(""), "target/shown/x !target/old/x");
    ASSERT_TRUE(
        QFile::remove(path("target/shown")) && QFile::rename(path("target/old"), path("target/shown")));

    // By another way to the same directories.
    if (unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0) {
        ASSERT_EQ(
            mount(qPrintable(path("home")), qPrintable(path("target/shown")), nullptr, MS_BIND, nullptr), 0);
        expectClosed(path(""), "target/shown/.later/x !target/shown/x");
        umount2(qPrintable(path("target/shown")), MNT_DETACH);
    }
    qputenv("PATH", programs);
}

TEST_F(ServiceTest, ByDefaultPagesChangeNothingThatRunsOrIsSecret)
{
    const QTemporaryDir home;
    const QByteArray realHome = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path()));
    expectClosed(home.path(),
        ".bashrc .profile .ssh/authorized_keys .gnupg .mozilla/x .config/autostart/x.desktop "
        ".config/systemd/user/x .local/bin/x .local/share/applications/x bin/x snap/firefox "
        "!Documents/x !notes !Desktop/x !");
    expectClosed(path(""),
        "accounts.json accounts.json.damaged config-centre.json logs/suite.log telemetry.jsonl "
        "settings/x cloud/x office/x anything !user/x");
    EXPECT_TRUE(krt::dirs::inBlackDownloadDir(QStringLiteral("/usr/bin/x")));
    qputenv("HOME", realHome);
}

/// The record of a file in the directory of a ZIP archive, and the root of a compound file.
QByteArray member(const char* name)
{
    return "PK\1\2" + QByteArray(24, '\0') + char(qstrlen(name)) + QByteArray(17, '\0') + name;
}
QByteArray compound(char kind)
{
    const QByteArray header = QByteArray("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1").leftJustified(30, '\0')
        + QByteArray("\x09").leftJustified(18, '\0') + '\1';
    return header.leftJustified(1024 + 80, '\0') + kind
        + QByteArray("\x10\x0c\0\0\0\0\0\xc0\0\0\0\0\0\0\x46", 15);
}

const QByteArray Launcher = "[Desktop Entry]\nExec=x\n";
// clang-format off
const struct FormatRow { const char* name; QByteArray content; bool isSafe = false; } Formats[] = {
    { "UnknownInterpreter", "#!/opt/none x" },
    { "InterpreterBehindAMark", "\xef\xbb\xbf#! /bin/sh" },
    { "LauncherBehindComments", "# x\r\n\n \t" + Launcher },
    { "LauncherBehindMuch", QByteArray("# \0\n", 4).repeated(100000) + Launcher },
    { "LauncherBehindAMark", "\xef\xbb\xbf" + Launcher },
    { "LauncherAcrossChunks", QByteArray((1 << 18) - 5, '\n') + Launcher },
    { "ReferenceToAPackage", "[Flatpak Ref]\n" },
    { "DebianPackage", "!<arch>\ndebian-binary   " },
    { "RpmPackage", "\xed\xab\xee\xdb\3" },
    { "Snap", "hsqs" },
    { "WindowsInstaller", compound('\x84') },
    { "WindowsProgram", "MZ\x90" },
    { "JavaArchive", member("a") + member("meta-inf/MANIFEST.MF") },
    { "JavaArchiveBehindText", QByteArray((1 << 18) - 20, 'x') + member("META-INF/MANIFEST.MF") },
    { "PythonArchive", member("__main__.py") },
    { "Text", "About scripts, which begin with #!, and [Desktop Entry].\n", true },
    { "Settings", "[Desktop]\nEntry=x\n", true },
    { "OldDocument", compound('\x84').chopped(1), true },
    { "Document", member("META-INF/manifest.xml"), true },
    { "Empty", "", true },
};
// clang-format on

ROW_TEST(ServiceTest, ProgramsAreKnownByTheirContent, Formats)
{
    useProfile(R"({"cloud": {"closedToUploads": []}})");
    write("file.txt", GetParam().content);
    EXPECT_EQ(krt::dirs::isFileFormatSafe(path("file.txt")), GetParam().isSafe);
}

} // namespace
