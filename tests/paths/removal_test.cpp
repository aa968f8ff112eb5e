// What a page must not take along when it removes a directory. Nothing is removed here.
#include "local/treechanges.h"
#include "tests/services/fixture.h"
#include "tests/support/rows.h"

namespace {

/// The home directory is "users/me", or with `linked` the link "linked" to it.
const struct RemovalRow {
    const char* name;
    const char* directory; ///< below the data directory, which is "@" in a path that begins with '/'
    bool guarded;
    bool linked = false;
} Removals[] = {
    { "Everything", "/", true },
    { "Home", "users/me", true },
    { "AboveHome", "users", true },
    { "HomeByAnotherRoot", "/proc/self/root@/users/me", true },
    { "HomeThroughALink", "free/link to users/me", true },
    { "HomeThatIsALink", "linked", true, true },
    { "WhereTheHomeLinkLeads", "users/me", true, true },
    { "LinkToHome", "linked", false },
    { "InHome", "users/me/docs", false },
    { "SameBeginningAsHome", "users/m", false },
    { "LinkToWhatIsAboveHome", "free/link to users", false },
    { "FarAboveAClosedDirectory", "holder", true },
    { "WithLinksToGuardedOnes", "free", false },
};

class Removal : public ServiceTest {
protected:
    ~Removal() override { qputenv("HOME", m_home); }
    const QByteArray m_home = qgetenv("HOME");
};

ROW_TEST(Removal, OfWhatHoldsGuardedDirectories, Removals)
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
    const QString directory =
        given.startsWith(u'/') ? QString(given).replace(u'@', path("")) : path(GetParam().directory);
    EXPECT_EQ(holdsGuardedDirectory(directory), GetParam().guarded) << directory.toStdString();
}

} // namespace
