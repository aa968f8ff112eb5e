// What a page must not take along when it removes a directory. Nothing is removed here.
#include "local/treechanges.h"
#include "tests/services/fixture.h"

namespace {

/// The home directory is "users/me", or with `linked` the link "linked" to it.
struct RemovalCase {
    const char* name;
    const char*
        directory; ///< below the data directory, which is the parent of the home, unless it begins with '/'
    bool guarded;
    bool linked = false;
};

class Removal : public ServiceTest, public testing::WithParamInterface<RemovalCase> {
protected:
    ~Removal() override { qputenv("HOME", m_home); }
    const QByteArray m_home = qgetenv("HOME");
};

TEST_P(Removal, OfWhatHoldsGuardedDirectories)
{
    QDir root(path(""));
    for (const char* made : { "users/me/docs", "holder/deep/closed", "free/deep" })
        ASSERT_TRUE(root.mkpath(QString::fromLatin1(made)));
    ASSERT_TRUE(QFile::link(path("users"), path("free/link to users")));
    ASSERT_TRUE(QFile::link(path("holder/deep/closed"), path("free/link to closed")));
    ASSERT_TRUE(QFile::link(path("users/me"), path("linked")));
    qputenv("HOME", QFile::encodeName(path(GetParam().linked ? "linked" : "users/me")));
    useProfile(R"({"directories": {"blacklistedDownloads": ["${DATA}/holder/deep/closed"]}})");
    const QString given = QString::fromLatin1(GetParam().directory);
    QString directory = given.startsWith(QLatin1Char('/')) ? given : path(GetParam().directory);
    directory.replace(QLatin1Char('@'), path(""));
    EXPECT_EQ(holdsGuardedDirectory(directory), GetParam().guarded) << directory.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Directories, Removal,
    testing::Values(RemovalCase { "Everything", "/", true }, RemovalCase { "Home", "users/me", true },
        RemovalCase { "AboveHome", "users", true },
        RemovalCase { "HomeByAnotherRoot", "/proc/self/root@/users/me", true },
        RemovalCase { "HomeThroughALink", "free/link to users/me", true },
        RemovalCase { "HomeThatIsALink", "linked", true, true },
        RemovalCase { "WhereTheHomeLinkLeads", "users/me", true, true },
        RemovalCase { "LinkToHome", "linked", false }, RemovalCase { "InHome", "users/me/docs", false },
        RemovalCase { "SameBeginningAsHome", "users/m", false },
        RemovalCase { "LinkToWhatIsAboveHome", "free/link to users", false },
        RemovalCase { "FarAboveAClosedDirectory", "holder", true },
        RemovalCase { "WithLinksToGuardedOnes", "free", false }),
    caseName<RemovalCase>);

} // namespace
