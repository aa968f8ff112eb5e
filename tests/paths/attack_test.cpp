// What pages may try on the path check: a named row for each trick.
#include "local/pathcheck.h"
#include "local/treechanges.h"
#include "tests/paths/world.h"
#include "tests/services/fixture.h"
#include "tests/support/rows.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <unistd.h>

namespace {

using namespace std::string_literals;

constexpr auto Refused = std::nullopt;

/// In `given` and `resolved`, '@' stands for the data directory.
struct PathRow {
    const char* name;
    std::u16string given;
    std::optional<std::u16string> resolved; ///< Refused, or what the check returns
    int bytes = 0; ///< when not 0: both paths are filled up with names until they have so many bytes
};

std::string shown(const QString& path)
{
    return path.size() > 200 ? path.left(200).toStdString() + "..." : path.toStdString();
}

std::u16string times(int count, const std::u16string& text)
{
    std::u16string all;
    for (; count > 0; --count)
        all += text;
    return all;
}

/// The variables that the rows use. '@' in a value stands for the data directory.
const std::vector<std::pair<const char*, const char*>> variables {
    { "P_ROOT", "@" },
    { "P_EMPTY", "" },
    { "P_RELATIVE", "open" },
    { "P_STEPS", "@/open/.." },
    { "P_DOT", "@/open/." },
    { "P_CLOSED", "@/closed" },
    { "P_CLOSED_PART", "@/clo" },
    { "P_PLUGINS", "@/plugins//" },
    { "P_LINK", "@/open/absolute" },
    { "P_VARIABLE", "%P_ROOT%" },
    { "P_MARK", "\xef\xbb\xbf@/closed" },
    { "P_INVALID", "@/\xff" },
    { "P_EQUALS", "B=@/closed" },
    { "P_A%P_B", "@/open/greedy" },
    { "P_A%/%P_B", "@/open/slash" },
    { "P_\u00dc\U0001f512", "@/open/named" },
};

class PathCheck : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_world = std::make_unique<PathWorld>();
        ASSERT_EQ(profile::setDataDirectory(s_world->root()), QString());
        const QJsonObject directories {
            { QStringLiteral("blacklistedDownloads"), QJsonArray::fromStringList(s_world->blacklisted()) },
            { QStringLiteral("pluginDownloads"), QStringLiteral("${DATA}/plugins") },
        };
        QFile file(s_world->placed(QStringLiteral("@/profile.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(QJsonObject { { QStringLiteral("directories"), directories } }).toJson());
        file.close();
        ASSERT_EQ(profile::load(file.fileName()).toStdString(), "");
        for (const auto& [name, value] : variables)
            qputenv(name, QByteArray(value).replace('@', QFile::encodeName(s_world->root())));
        // For the ways through /proc.
        ASSERT_TRUE(QDir::setCurrent(s_world->placed(QStringLiteral("@/closed/deep"))));
        ASSERT_EQ(dup2(open(".", O_RDONLY | O_CLOEXEC), 99), 99);
        QDir::setSearchPaths(QStringLiteral("world"), { s_world->root() });
    }
    static void TearDownTestSuite() { s_world.reset(); }

    static QString placed(const std::u16string& text, int bytes)
    {
        QString path = s_world->placed(QString::fromStdU16String(text));
        for (int missing = bytes - QFile::encodeName(path).size(); missing > 0;) {
            const int name = missing == 202 ? 199 : qMin(missing - 1, 200); // never a single slash
            path += QLatin1Char('/') + QString(name, QLatin1Char('n'));
            missing -= name + 1;
        }
        return path;
    }

    static inline std::unique_ptr<PathWorld> s_world;
};

// clang-format off: a row is a line.
const PathRow Tricks[] = {
    // Steps
    { "Alone", u"..", Refused },
    { "BeforeAVariable", u"../../%P_ROOT%/open/a", u"@/open/a" },
    { "BeforeAClosedVariable", u"../%P_CLOSED%/a", Refused },
    { "BehindADotBeforeAVariable", u"./../%P_ROOT%/open/a", Refused },
    { "DotBeforeAVariable", u"./%P_ROOT%/open/a", u"@/open/a" },
    { "OneTooManyBeforeAVariable", u"x/../../%P_ROOT%/open/a", Refused },
    { "EatTheVariable", u"%P_ROOT%/../a", Refused },
    { "TouchingAVariable", u"%P_ROOT%..", u"@.." },
    { "InsideIntoClosed", u"@/open/../closed/a", Refused },
    { "ThroughNothingIntoClosed", u"@/none/none/../../closed/a", Refused },
    { "OutOfClosed", u"@/closed/../open/a", u"@/open/a" },
    { "TrailingToTheClosedDirectory", u"@/closed/deep/..", Refused },
    { "AboveTheRootIntoClosed", u"/../../../..@/closed/a", Refused },
    { "AboveTheRoot", u"/../..@/open/a", u"/../..@/open/a" },
    { "BeforeAnAbsolutePath", u"../@/open/a", u"@/open/a" },
    { "WithADoubledSlash", u"..//%P_ROOT%/a", u"/%P_ROOT%/a" },
    { "ThreeDotsAreAName", u"@/.../closed/a", u"@/.../closed/a" },
    { "WithBackslashes", u"@\\..\\closed\\a", u"@\\..\\closed\\a" },
    { "WrittenAsInUrls", u"@/open/%2e%2e/closed/a", u"@/open/%2e%2e/closed/a" },
    // Variables
    { "Unset", u"%P_UNSET%/a", u"/a" },
    { "UnsetBeforeAClosedPath", u"%P_UNSET%@/closed/a", Refused },
    { "LongestNameLeavesARelativePath", u"%P_UNSET%/%P_ROOT", Refused },
    { "EmptyBeforeAClosedPath", u"%P_EMPTY%@/closed/a", Refused },
    { "WithoutANameBeforeAClosedPath", u"%%@/closed/a", Refused },
    { "HoldsARelativePath", u"%P_RELATIVE%/a", Refused },
    { "HoldsParentStepsBeforeClosed", u"%P_STEPS%/closed/a", Refused },
    { "MakesAStepWithItsLastDot", u"%P_DOT%./closed/a", Refused },
    { "HoldsAClosedDirectory", u"%P_CLOSED%/a", Refused },
    { "HoldsTheBeginningOfAClosedName", u"%P_CLOSED_PART%sed/a", Refused },
    { "HoldsThePluginDirectory", u"%P_PLUGINS%a", Refused },
    { "HoldsALinkIntoClosed", u"%P_LINK%/a", Refused },
    { "HoldsAnotherVariable", u"%P_VARIABLE%/a", Refused },
    { "HoldsAByteOrderMark", u"%P_MARK%/a", Refused },
    { "HoldsBytesThatAreNoText", u"%P_INVALID%/a", u"@/\ufffd/a" },
    { "IsFollowedByAnother", u"%P_ROOT%%P_CLOSED%/a", u"/a" },
    { "TakesTheLongestName", u"%P_A%P_B%/a", u"@/open/greedy/a" },
    { "TakesASlashIntoItsName", u"%P_A%/%P_B%/a", u"@/open/slash/a" },
    { "NameHoldsAnEqualsSign", u"%P_EQUALS=B%/a", Refused },
    { "NameIsNotAscii", u"%P_\u00dc\U0001f512%/a", u"@/open/named/a" },
    { "NameHoldsANul", u"%P_ROOT\0%/open/a"s, Refused },
    { "NameIsVeryLong", u"%" + std::u16string(50000, u'A') + u"%/a", u"/a" },
    { "WithoutAnEnd", u"%P_ROOT/a", Refused },
    { "BehindASlash", u"/%P_ROOT%/a", u"/%P_ROOT%/a" },
    { "OfTheShell", u"$P_ROOT/a", Refused },
    // Links
    { "IntoClosed", u"@/open/absolute/a", Refused },
    { "RelativeIntoClosed", u"@/open/relative/a", Refused },
    { "ChainIntoClosed", u"@/open/chain/a", Refused },
    { "ToAClosedFile", u"@/open/to-file", Refused },
    { "BrokenIntoClosed", u"@/open/broken", Refused },
    { "LinksThroughNothingIntoClosed", u"@/open/past-nothing/a", Refused },
    { "IntoPlugins", u"@/open/plugins/a", Refused },
    { "IntoAClosedDirectoryThatIsNotThereYet", u"@/open/later/a", Refused },
    { "IntoWhatAClosedLinkNames", u"@/open/store/a", Refused },
    { "UpAndIntoClosed", u"@/open/up/closed/a", Refused },
    { "ToTheRootAndIntoClosed", u"@/open/slash@/closed/a", Refused },
    { "WithANameOfAllPlanes", u"@/open/\u00e4 \u4e2d \U0001f512/a", Refused },
    { "WithANewlineInItsName", u"@/open/new\nline/a", Refused },
    { "StepsBehindOneLeaveNoTraceOfIt", u"@/open/relative/../a", u"@/open/a" },
    { "StepsBehindOneIntoClosed", u"@/open/relative/../../closed/a", Refused },
    { "OutOfTheClosedDirectory", u"@/closed/out/a", Refused },
    { "OutOfTheClosedDirectoryByItself", u"@/closed/out", Refused },
    { "OutOfPlugins", u"@/plugins/out/a", Refused },
    { "StepsThroughALinkOutOfTheClosedDirectory", u"@/closed/out/../a", Refused },
    { "ThroughClosedAndOutBySteps", u"@/open/around/a", u"@/open/around/a" },
    { "Broken", u"@/open/broken-open/a", u"@/open/broken-open/a" },
    { "LoopOfTwo", u"@/open/ping/a", u"@/open/ping/a" },
    { "LoopAndStepsIntoClosed", u"@/open/loop/../../closed/a", Refused },
    { "FortyInAChain", u"@/open/l1/a", Refused },
    { "ManyInOnePath", u"@" + times(39, u"/open/up") + u"/open/absolute/a", Refused },
    { "MoreThanTheSystemFollows", u"@" + times(40, u"/open/up") + u"/open/a",
        u"@" + times(40, u"/open/up") + u"/open/a" },
    { "BehindAWayTooLongToSpell", u"@/deep/one/two/in/a", Refused },
    // Names
    { "Root", u"/", u"/" },
    { "ClosedItself", u"@/closed", Refused },
    { "ClosedWithSlashes", u"@//closed///a", Refused },
    { "ClosedWithDots", u"@/./closed/./a", Refused },
    { "ClosedByTheNameThatIsALink", u"@/moved/a", Refused },
    { "ClosedByWhereTheLinkLeads", u"@/store/a", Refused },
    { "ClosedAndNotThereYet", u"@/later/a", Refused },
    { "ClosedWithANameOfAllPlanes", u"@/\u00fcber \u4e2d \U0001f512/a", Refused },
    { "Plugins", u"@/plugins/a", Refused },
    { "AboveClosed", u"@", u"@" },
    { "SameBeginning", u"@/closed-not/a", u"@/closed-not/a" },
    { "InUpperCase", u"@/CLOSED/a", u"@/CLOSED/a" },
    { "TrailingSpace", u"@/closed /a", u"@/closed /a" },
    { "NewlineBeforeClosed", u"@/open\n/../closed/a", Refused },
    { "NulAtTheEnd", u"@/open/a\0"s, Refused },
    { "NulHidesWhatStandsBehind", u"@/closed\0/../open/a"s, Refused },
    { "Decomposed", u"@/u\u0308ber \u4e2d \U0001f512/a", u"@/u\u0308ber \u4e2d \U0001f512/a" },
    { "Lookalike", u"@/\u0441l\u043esed/a", u"@/\u0441l\u043esed/a" },
    { "AstralBeforeStepsIntoClosed", u"@/\U0001f600/../closed", Refused },
    { "ByteOrderMark", u"\ufeff@/closed/a", Refused },
    { "HighSurrogateAlone", u"@/open/x\xd800", Refused },
    { "LowSurrogateAlone", u"@/open/x\xdc00", Refused },
    { "SurrogateThatIsWrittenAsTheNameOfALink", u"@/open/\xd800/a", Refused },
    { "SurrogateBehindAVariable", u"%P_ROOT%/open/\xd800", Refused },
    { "TooLongANameAndStepsIntoClosed", u"@/" + std::u16string(256, u'n') + u"/../closed/a", Refused },
    { "PathOf4095Bytes", u"@/open/\u00e4", u"@/open/\u00e4", 4095 },
    { "PathOf4096Bytes", u"@/open/\u00e4", Refused, 4096 },
    { "ClosedPathOf4096Bytes", u"@/closed", Refused, 4096 },
    { "StepsOf100000UnitsIntoClosed", u"@" + times(20000, u"/a/..") + u"/closed/a", Refused },
    { "SlashesOf100000Units", u"@/open" + std::u16string(100000, u'/') + u"a", u"@/open/a" },
    // Forms
    { "Tilde", u"~/a", Refused },
    { "Resource", u":/a", Refused },
    { "ResourceThatIsThere", u":/novaprofile/profile.schema.json", Refused },
    { "FileUrl", u"file://@/open/a", Refused },
    { "FileUrlBehindASlash", u"/file://@/open/a", u"/file:@/open/a" },
    { "SearchPathOfTheProgram", u"world:open/file", Refused },
    { "Drive", u"C:/a", Refused },
    { "ProcRootIntoClosed", u"/proc/self/root@/closed/a", Refused },
    { "ProcRoot", u"/proc/self/root@/open/a", u"/proc/self/root@/open/a" },
    { "ProcCurrentDirectory", u"/proc/self/cwd/a", Refused },
    { "ProcOpenDirectory", u"/proc/self/fd/99/a", Refused },
    { "DevOpenDirectory", u"/dev/fd/99/a", Refused },
    { "StepsBehindDevOpenDirectory", u"/dev/fd/99/../a", u"/dev/fd/a" },
};
// clang-format on

ROW_TEST(PathCheck, RefusesOrLeadsWhereItMay, Tricks)
{
    const PathRow& row = GetParam();
    const QString given = placed(row.given, row.bytes);
    const std::string before = s_world->listing();

    const auto path = jsapi::WritablePath::check(given);
    const std::optional<QString> resolved = path ? std::optional(path->string()) : std::nullopt;

    EXPECT_EQ(s_world->listing(), before);
    if (!row.resolved) {
        EXPECT_FALSE(resolved) << shown(given) << " is resolved to " << shown(*resolved);
        return;
    }
    ASSERT_TRUE(resolved) << shown(given) << " is refused";
    EXPECT_TRUE(*resolved == placed(*row.resolved, row.bytes)) << "resolved to " << shown(*resolved);
    EXPECT_TRUE(resolved->startsWith(QLatin1Char('/')));
    EXPECT_EQ(s_world->trespass(*resolved), "");
}

// What a page must not take along when it removes a directory. Nothing is removed here.

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
    const auto removed = jsapi::WritablePath::check(directory);
    EXPECT_EQ(!removed || holdsGuardedDirectory(*removed), GetParam().guarded) << directory.toStdString();
}

} // namespace

int main(int argc, char** argv)
{
    // How names of files are written must not depend on who runs the test.
    qputenv("LC_ALL", "C.UTF-8");
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
