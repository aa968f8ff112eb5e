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
#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
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
    { "AboveTheRoot", u"/../..@/open/a", u"@/open/a" },
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
    { "StepsBehindOne", u"@/open/up/../a", Refused },
    { "StepsBehindOneThatLeadWhereTheyRead", u"@/open/ping/../a", u"@/open/a" },
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
    { "StepsBehindDevOpenDirectory", u"/dev/fd/99/../a", Refused },
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

/// '@' in a path stands for the data directory. The home directory is "@/users/me", or with `linked` the link
/// "@/linked/home" to it.
const struct RemovalRow {
    const char* name;
    const char* directory;
    jsapi::Removal expected;
    bool linked = false;
} Removals[] = {
    { "Everything", "@", jsapi::Removal::Refused },
    { "TheRoot", "/", jsapi::Removal::Refused },
    { "Home", "@/users/me", jsapi::Removal::Refused },
    { "AboveHome", "@/users", jsapi::Removal::Refused },
    { "HomeByAnotherRoot", "/proc/self/root@/users/me", jsapi::Removal::Refused },
    { "HomeThroughALink", "@/free/to users/me", jsapi::Removal::Refused },
    { "HomeThatIsALink", "@/linked/home", jsapi::Removal::Refused, true },
    { "WhereTheHomeLinkLeads", "@/users/me", jsapi::Removal::Refused, true },
    { "WhatHoldsTheHomeLink", "@/linked", jsapi::Removal::Refused, true },
    { "LinkToHomeByTheWay", "@/linked/home", jsapi::Removal::Done },
    { "InHome", "@/users/me/docs", jsapi::Removal::Done },
    { "LinkToWhatIsAboveHome", "@/free/to users", jsapi::Removal::Done },
    { "WithLinks", "@/free", jsapi::Removal::Done },
    { "FarAboveAClosedDirectory", "@/holder", jsapi::Removal::Refused },
    { "LinkToAClosedDirectory", "@/to closed", jsapi::Removal::Refused },
    { "LinkOnTheWayToAClosedDirectory", "@/way", jsapi::Removal::Refused },
    { "WithALinkOnTheWayToAClosedDirectory", "@/ways", jsapi::Removal::Refused },
    { "WithAClosedLink", "@/shut", jsapi::Removal::Refused },
    { "WithAClosedFile", "@/papers", jsapi::Removal::Refused },
    { "LinkInCircles", "@/circle", jsapi::Removal::Done },
    { "DeeperThanAPathIsLong", "@/deep", jsapi::Removal::Done },
};

class Removal : public ServiceTest {
protected:
    ~Removal() override { qputenv("HOME", m_home); }
    const QByteArray m_home = qgetenv("HOME");
};

/// Every directory of the world, and every file and link, with where it leads.
std::vector<std::string> listAll(const QString& root)
{
    std::vector<std::string> all;
    for (const auto& entry : fs::recursive_directory_iterator(root.toStdString()))
        all.push_back(entry.path().string() + (entry.is_symlink() ? fs::read_symlink(entry).string() : ""));
    std::sort(all.begin(), all.end());
    return all;
}

ROW_TEST(Removal, LeavesTheWaysToGuardedPlaces, Removals)
{
    const RemovalRow& row = GetParam();
    const QString root = path("");
    QDir directory(root);
    for (const char* made : { "users/me/docs", "holder/deep/closed", "free/deep/er", "store/inner", "linked",
             "ways", "shut", "papers/in", "circle" })
        ASSERT_TRUE(directory.mkpath(QString::fromLatin1(made)));
    const std::pair<const char*, const char*> links[] = { { "users", "free/to users" },
        { "users/me", "linked/home" }, { "holder/deep/closed", "to closed" }, { "store", "way" },
        { "store", "ways/one" }, { "circle", "circle/on" }, { "store/inner", "shut/link" },
        { "nowhere", "free/broken" } };
    for (const auto& [target, link] : links)
        ASSERT_TRUE(QFile::link(path(target), path(link)));
    write("papers/in/file", "text");
    write("free/deep/er/file", "text");
    if (row.directory == std::string("@/deep"))
        makeDeepTree(path("deep"), 30);
    qputenv("HOME", QFile::encodeName(path(row.linked ? "linked/home" : "users/me")));
    useProfile(R"({"directories": {"blacklistedDownloads": ["${DATA}/holder/deep/closed", "${DATA}/way/inner",
        "${DATA}/ways/one/inner", "${DATA}/shut/link", "${DATA}/papers/in/file"]}})");
    const auto before = listAll(root);

    const QString removed = QString::fromLatin1(row.directory).replace(u'@', root);
    const auto checked = jsapi::WritablePath::check(removed);
    const jsapi::Removal removal = checked ? jsapi::removeTree(*checked) : jsapi::Removal::Refused;

    EXPECT_EQ(removal, row.expected);
    EXPECT_EQ(QFileInfo(removed).isSymLink() || QFileInfo::exists(removed),
        row.expected == jsapi::Removal::Refused);
    auto expected = before;
    if (row.expected == jsapi::Removal::Done)
        std::erase_if(
            expected, [&](const auto& entry) { return entry.rfind(removed.toStdString(), 0) == 0; });
    EXPECT_EQ(listAll(root), expected);
}

// What a page may change is what was checked, though another program changes what the path leads to.
TEST_F(Removal, OfWhatWasCheckedThoughALinkTookItsPlace)
{
    QDir root(path(""));
    for (const char* made : { "open/tree/in", "closed/tree/in" })
        ASSERT_TRUE(root.mkpath(QString::fromLatin1(made)));
    write("source", "text");
    useProfile(R"({"directories": {"blacklistedDownloads": ["${DATA}/closed"]}})");
    const auto check = [&](const char* below) { return *jsapi::WritablePath::check(path(below)); };
    const auto file = check("open/file"), tree = check("open/tree"), made = check("open/new/er");
    ASSERT_TRUE(root.rename(path("open"), path("moved")) && QFile::link(path("closed"), path("open")));

    EXPECT_TRUE(jsapi::copyFile(jsapi::openRegularFile(path("source")), file));
    EXPECT_TRUE(jsapi::makeDirectory(made));
    EXPECT_EQ(jsapi::removeTree(tree), jsapi::Removal::Done);
    for (const char* there : { "closed/tree/in", "moved/file", "moved/new/er" })
        EXPECT_TRUE(QFileInfo::exists(path(there))) << there;
    for (const char* notThere : { "closed/file", "closed/new", "moved/tree" })
        EXPECT_FALSE(QFileInfo::exists(path(notThere))) << notThere;
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
