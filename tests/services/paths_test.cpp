#include "host/krt/pathinside.h"
#include "krt/dirs.h"
#include "suite/kpluginconfig.h"
#include "tests/services/fixture.h"

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
}

TEST_F(ServiceTest, GuardedDirectoriesComeFromTheProfile)
{
    useProfile(R"({"directories": {"blacklistedDownloads": ["${DATA}/a", "${HOME}/.guarded"],
                   "pluginDownloads": "${DATA}/p", "officeInstallRoot": "${DATA}/x/../office"}})");
    EXPECT_EQ(krt::dirs::officeInstallRoot(), path("office"));
    EXPECT_TRUE(krt::dirs::inBlackDownloadDir(path("a/file")));
    EXPECT_TRUE(krt::dirs::inBlackDownloadDir(QDir::homePath() + QStringLiteral("/.guarded")));
    EXPECT_FALSE(krt::dirs::inBlackDownloadDir(path("p/file")));
    EXPECT_TRUE(kpluginconfig::inPluginDownloadDir(path("p/file")));
    EXPECT_FALSE(kpluginconfig::inPluginDownloadDir(path("a/file")));
}

} // namespace
