#include "host/krt/pathinside.h"
#include "krt/dirs.h"
#include "suite/kpluginconfig.h"
#include "tests/services/fixture.h"

namespace {

struct PathCase {
    const char* name;
    const char* path; ///< below the data directory, unless it begins with '!'
    bool inside;
};

class PathsInside : public ServiceTest, public testing::WithParamInterface<PathCase> { };

TEST_P(PathsInside, OfTheGuardedDirectory)
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

    const QString given = QString::fromUtf8(GetParam().path);
    const QString tested =
        given.startsWith(QLatin1Char('!')) ? given.mid(1) : path("") + QLatin1Char('/') + given;
    EXPECT_EQ(krt::isPathInside(tested, path("guarded")), GetParam().inside) << tested.toStdString();
    EXPECT_EQ(krt::isPathInside(tested, path("alias")), GetParam().inside) << "by the directory's other name";
}

INSTANTIATE_TEST_SUITE_P(Plain, PathsInside,
    testing::Values(PathCase { "Itself", "guarded", true }, PathCase { "WithSlashes", "guarded//", true },
        PathCase { "Below", "guarded/deep/file", true },
        PathCase { "NotThere", "guarded/no/such/file", true },
        PathCase { "SameBeginning", "guardedness/file", false }, PathCase { "Beside", "open/file", false },
        PathCase { "Above", "", false }, PathCase { "StepsIn", "open/../guarded/x", true },
        PathCase { "StepsOut", "guarded/../open/x", false },
        PathCase { "StepsThroughNothing", "none/../guarded/x", true },
        PathCase { "DotSteps", "./guarded/./x", true }, PathCase { "Relative", "!guarded/x", false },
        PathCase { "Empty", "!", false }, PathCase { "Root", "!/", false }),
    caseName<PathCase>);

INSTANTIATE_TEST_SUITE_P(Links, PathsInside,
    testing::Values(PathCase { "Absolute", "open/absolute/x", true },
        PathCase { "Relative", "open/relative/x", true }, PathCase { "Chain", "open/chain/no/file", true },
        PathCase { "Broken", "open/broken", true }, PathCase { "ParentOfTarget", "open/relative/../x", true },
        PathCase { "Loop", "open/loop/x", false }, PathCase { "LeadingOut", "guarded/out/x", true },
        PathCase { "CleanedItStaysIn", "guarded/out/../x", true },
        PathCase { "CleanedItStepsIn", "open/root/../../guarded/x", true },
        PathCase { "Alias", "alias/x", true }),
    caseName<PathCase>);

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
