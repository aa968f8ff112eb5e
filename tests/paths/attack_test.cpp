// What pages may try on the path check: a named row for each trick.
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "local/pathcheck.h"
#include "tests/paths/world.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace std::string_literals;

constexpr auto Refused = std::nullopt;

/// In `given` and `resolved`, '@' stands for the data directory.
struct PathCase {
    const char* name;
    std::u16string given;
    std::optional<std::u16string> resolved; ///< Refused, or what the check answers
    int bytes = 0; ///< when not 0: both paths are filled up with names until they have so many bytes
};

std::string shown(const QString& path)
{
    return path.size() > 200 ? path.left(200).toStdString() + "..." : path.toStdString();
}

void PrintTo(const PathCase& row, std::ostream* out)
{
    *out << shown(QString::fromStdU16String(row.given));
}

std::u16string times(int count, const std::u16string& text)
{
    std::u16string all;
    for (; count > 0; --count)
        all += text;
    return all;
}

std::unique_ptr<PathWorld> world;
int refusedRows = 0;
int passedRows = 0;

/// The variables that the rows use. '@' in a value stands for the data directory.
const std::vector<std::pair<const char*, const char*>> variables {
    { "P_ROOT", "@" },
    { "P_EMPTY", "" },
    { "P_RELATIVE", "open" },
    { "P_STEPS", "@/open/.." },
    { "P_STEPS_BELOW", "@/closed/.." },
    { "P_ONLY_STEPS", "../.." },
    { "P_DOT", "@/open/." },
    { "P_CLOSED", "@/closed" },
    { "P_CLOSED_PART", "@/clo" },
    { "P_PLUGINS", "@/plugins//" },
    { "P_LINK", "@/open/absolute" },
    { "P_VARIABLE", "%P_ROOT%" },
    { "P_TILDE", "~" },
    { "P_COLON", ":" },
    { "P_SPACE", " @" },
    { "P_SLASH", "/" },
    { "P_MARK", "\xef\xbb\xbf@/closed" },
    { "P_INVALID", "@/\xff" },
    { "P_EQUALS", "B=@/closed" },
    { "P_A%P_B", "@/open/greedy" },
    { "P_A%/%P_B", "@/open/slash" },
    { "P_\u00dc\U0001f512", "@/open/named" },
    { " P SPACE ", "@/open/space" },
};

class PathAttack : public testing::TestWithParam<PathCase> {
protected:
    static void SetUpTestSuite()
    {
        if (world)
            return;
        world = std::make_unique<PathWorld>();
        ASSERT_EQ(profile::setDataDirectory(world->root()), QString());
        const QJsonObject directories {
            { QStringLiteral("blacklistedDownloads"), QJsonArray::fromStringList(world->blacklisted()) },
            { QStringLiteral("pluginDownloads"), QStringLiteral("${DATA}/plugins") },
        };
        QFile file(world->placed(QStringLiteral("@/profile.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(QJsonObject { { QStringLiteral("directories"), directories } }).toJson());
        file.close();
        ASSERT_EQ(profile::load(file.fileName()).toStdString(), "");
        for (const auto& [name, value] : variables)
            qputenv(name, QByteArray(value).replace('@', QFile::encodeName(world->root())));
        // For the ways through /proc.
        ASSERT_TRUE(QDir::setCurrent(world->placed(QStringLiteral("@/closed/deep"))));
        ASSERT_EQ(dup2(open(".", O_RDONLY | O_CLOEXEC), 99), 99);
        QDir::setSearchPaths(QStringLiteral("world"), { world->root() });
    }

    static QString placed(const std::u16string& text, int bytes)
    {
        QString path = world->placed(QString::fromStdU16String(text));
        for (int missing = bytes - QFile::encodeName(path).size(); missing > 0;) {
            const int name = missing == 202 ? 199 : qMin(missing - 1, 200); // never a single slash
            path += QLatin1Char('/') + QString(name, QLatin1Char('n'));
            missing -= name + 1;
        }
        return path;
    }
};

TEST_P(PathAttack, IsRefusedOrLeadsWhereItMay)
{
    const PathCase& row = GetParam();
    const QString given = placed(row.given, row.bytes);
    const std::string before = world->listing();

    const std::optional<QString> resolved = checkedPath(given);

    EXPECT_EQ(world->listing(), before);
    ++(resolved ? passedRows : refusedRows);
    if (!row.resolved) {
        EXPECT_FALSE(resolved) << "resolved to " << shown(*resolved);
        return;
    }
    ASSERT_TRUE(resolved) << "refused";
    EXPECT_TRUE(*resolved == placed(*row.resolved, row.bytes)) << "resolved to " << shown(*resolved);
    EXPECT_TRUE(resolved->startsWith(QLatin1Char('/')));
    EXPECT_EQ(world->trespass(*resolved), "");
}

std::string attackName(const testing::TestParamInfo<PathCase>& info)
{
    return info.param.name;
}

#define PATHS(theme, ...)                                                                                    \
    INSTANTIATE_TEST_SUITE_P(                                                                                \
        theme, PathAttack, testing::ValuesIn(std::vector<PathCase> __VA_ARGS__), attackName)

// clang-format off: a row is a line.
PATHS(Steps,
    {
        { "Alone", u"..", Refused },
        { "AloneWithASlash", u"../", Refused },
        { "Repeated", u"../../..", Refused },
        { "BeforeAFile", u"../../a", Refused },
        { "BeforeAVariable", u"../../%P_ROOT%/open/a", u"@/open/a" },
        { "ThousandBeforeAVariable", times(1000, u"../") + u"%P_ROOT%/open/a", u"@/open/a" },
        { "BeforeAClosedVariable", u"../%P_CLOSED%/a", Refused },
        { "BehindADotBeforeAVariable", u"./../%P_ROOT%/open/a", Refused },
        { "DotBeforeAVariable", u"./%P_ROOT%/open/a", u"@/open/a" },
        { "DotBeforeAClosedVariable", u"./%P_CLOSED%/a", Refused },
        { "UndoneBeforeAVariable", u"x/../%P_ROOT%/open/a", u"@/open/a" },
        { "OneTooManyBeforeAVariable", u"x/../../%P_ROOT%/open/a", Refused },
        { "InARelativePath", u"x/../../a", Refused },
        { "EatTheVariable", u"%P_ROOT%/../a", Refused },
        { "BehindAVariable", u"%P_ROOT%/open/../a", u"@/a" },
        { "BehindAVariableIntoClosed", u"%P_ROOT%/open/../closed/a", Refused },
        { "TouchingAVariable", u"%P_ROOT%..", u"@.." },
        { "InsideAbsolute", u"@/open/../a", u"@/a" },
        { "InsideIntoClosed", u"@/open/../closed/a", Refused },
        { "ThroughNothingIntoClosed", u"@/none/none/../../closed/a", Refused },
        { "ThroughAFileIntoClosed", u"@/open/file/../../closed/a", Refused },
        { "OutOfClosed", u"@/closed/../open/a", u"@/open/a" },
        { "OutOfClosedAndBack", u"@/closed/../closed/a", Refused },
        { "TrailingToTheClosedDirectory", u"@/closed/deep/..", Refused },
        { "TrailingToTheOneAboveClosed", u"@/closed/..", u"@" },
        { "AboveTheRootIntoClosed", u"/../../../..@/closed/a", Refused },
        { "AboveTheRoot", u"/../..@/open/a", u"/../..@/open/a" },
        { "BeforeAnAbsoluteClosedPath", u"../@/closed/a", Refused },
        { "BeforeAnAbsolutePath", u"../@/open/a", u"@/open/a" },
        { "WithADoubledSlash", u"..//%P_ROOT%/a", u"/%P_ROOT%/a" },
        { "ThreeDotsAreAName", u"@/.../closed/a", u"@/.../closed/a" },
        { "ThreeDotsInFront", u".../%P_ROOT%/a", Refused },
        { "DotsAndALetter", u"@/open/..a/closed", u"@/open/..a/closed" },
        { "DotsAndASpace", u"@/open/.. /closed", u"@/open/.. /closed" },
        { "WithBackslashes", u"@\\..\\closed\\a", u"@\\..\\closed\\a" },
        { "WithBackslashesInFront", u"..\\..\\%P_ROOT%/a", Refused },
        { "OfFullWidth", u"@/open/\uff0e\uff0e/closed/a", u"@/open/\uff0e\uff0e/closed/a" },
        { "WrittenAsInUrls", u"@/open/%2e%2e/closed/a", u"@/open/%2e%2e/closed/a" },
    });

PATHS(Variables,
    {
        { "HoldsTheDataDirectory", u"%P_ROOT%/open/a", u"@/open/a" },
        { "Alone", u"%P_ROOT%", u"@" },
        { "Unset", u"%P_UNSET%/a", u"/a" },
        { "UnsetBeforeAClosedPath", u"%P_UNSET%@/closed/a", Refused },
        { "UnsetAlone", u"%P_UNSET%", Refused },
        { "UnsetBeforeARelativePath", u"%P_UNSET%a", Refused },
        { "UnsetBeforeAResource", u"%P_UNSET%:/a", Refused },
        { "LongestNameLeavesARelativePath", u"%P_UNSET%/%P_ROOT", Refused },
        { "Empty", u"%P_EMPTY%/a", u"/a" },
        { "EmptyBeforeAClosedPath", u"%P_EMPTY%@/closed/a", Refused },
        { "WithoutAName", u"%%/a", u"/a" },
        { "WithoutANameBeforeAClosedPath", u"%%@/closed/a", Refused },
        { "HoldsARelativePath", u"%P_RELATIVE%/a", Refused },
        { "HoldsOnlySteps", u"%P_ONLY_STEPS%/a", Refused },
        { "HoldsParentSteps", u"%P_STEPS%/a", u"@/a" },
        { "HoldsParentStepsBeforeClosed", u"%P_STEPS%/closed/a", Refused },
        { "HoldsParentStepsOutOfClosed", u"%P_STEPS_BELOW%/open/a", u"@/open/a" },
        { "MakesAStepWithItsLastDot", u"%P_DOT%./closed/a", Refused },
        { "HoldsAClosedDirectory", u"%P_CLOSED%/a", Refused },
        { "HoldsAClosedDirectoryAlone", u"%P_CLOSED%", Refused },
        { "HoldsTheBeginningOfAClosedName", u"%P_CLOSED_PART%sed/a", Refused },
        { "HoldsASiblingWithItsRest", u"%P_CLOSED%-not/a", u"@/closed-not/a" },
        { "HoldsThePluginDirectory", u"%P_PLUGINS%a", Refused },
        { "HoldsALinkIntoClosed", u"%P_LINK%/a", Refused },
        { "HoldsAnotherVariable", u"%P_VARIABLE%/a", Refused },
        { "HoldsATilde", u"%P_TILDE%/a", Refused },
        { "HoldsAColon", u"%P_COLON%/a", Refused },
        { "HoldsALeadingSpace", u"%P_SPACE%/a", Refused },
        { "HoldsASlash", u"%P_SLASH%@/closed/a", Refused },
        { "HoldsAByteOrderMark", u"%P_MARK%/a", Refused },
        { "HoldsBytesThatAreNoText", u"%P_INVALID%/a", u"@/\ufffd/a" },
        { "IsFollowedByAnother", u"%P_ROOT%%P_CLOSED%/a", u"/a" },
        { "TakesTheLongestName", u"%P_A%P_B%/a", u"@/open/greedy/a" },
        { "TakesASlashIntoItsName", u"%P_A%/%P_B%/a", u"@/open/slash/a" },
        { "EndsAtTheLastPercentSign", u"%P_ROOT%/open/%/a", u"/a" },
        { "NameHoldsAnEqualsSign", u"%P_EQUALS=B%/a", Refused },
        { "NameIsNotAscii", u"%P_\u00dc\U0001f512%/a", u"@/open/named/a" },
        { "NameHoldsSpaces", u"% P SPACE %/a", u"@/open/space/a" },
        { "NameHoldsANul", u"%P_ROOT\0%/open/a"s, Refused },
        { "NameHoldsANewline", u"%P_\nROOT%/a", Refused },
        { "NameInAnotherCase", u"%p_root%/a", u"/a" },
        { "NameIsVeryLong", u"%" + std::u16string(50000, u'A') + u"%/a", u"/a" },
        { "WithoutAnEnd", u"%P_ROOT/a", Refused },
        { "OnlyAPercentSign", u"%", Refused },
        { "NotInFront", u"x/%P_ROOT%/a", Refused },
        { "BehindASpace", u" %P_ROOT%/a", Refused },
        { "BehindASlash", u"/%P_ROOT%/a", u"/%P_ROOT%/a" },
        { "InsideAnAbsolutePath", u"@/open/%P_ROOT%/a", u"@/open/%P_ROOT%/a" },
        { "OfTheShell", u"$P_ROOT/a", Refused },
        { "OfTheShellInBraces", u"${P_ROOT}/a", Refused },
        { "OfTheProfile", u"${DATA}/open/a", Refused },
    });

PATHS(Links,
    {
        { "IntoClosed", u"@/open/absolute/a", Refused },
        { "IntoClosedByItself", u"@/open/absolute", Refused },
        { "RelativeIntoClosed", u"@/open/relative/a", Refused },
        { "ChainIntoClosed", u"@/open/chain/a", Refused },
        { "ToAClosedFile", u"@/open/to-file", Refused },
        { "BrokenIntoClosed", u"@/open/broken", Refused },
        { "BrokenIntoClosedAndFurther", u"@/open/broken/a/b", Refused },
        { "ThroughNothingIntoClosed", u"@/open/past-nothing/a", Refused },
        { "IntoPlugins", u"@/open/plugins/a", Refused },
        { "IntoAClosedDirectoryThatIsNotThereYet", u"@/open/later/a", Refused },
        { "IntoWhatAClosedLinkNames", u"@/open/store/a", Refused },
        { "UpAndIntoClosed", u"@/open/up/closed/a", Refused },
        { "UpAndAgainAndIntoClosed", u"@/open/up/open/up/open/up/closed/a", Refused },
        { "ToTheRootAndIntoClosed", u"@/open/slash@/closed/a", Refused },
        { "WithAQuestionMarkForAName", u"@/open/?/a", Refused },
        { "WithANameOfAllPlanes", u"@/open/\u00e4 \u4e2d \U0001f512/a", Refused },
        { "WithANewlineInItsName", u"@/open/new\nline/a", Refused },
        { "WithADoubledSlashBehind", u"@/open/absolute//a", Refused },
        { "WithADotBehind", u"@/open/absolute/.", Refused },
        { "StepsBehindOneLeaveNoTraceOfIt", u"@/open/relative/../a", u"@/open/a" },
        { "StepsBehindOneIntoClosed", u"@/open/relative/../../closed/a", Refused },
        { "OutOfTheClosedDirectory", u"@/closed/out/a", Refused },
        { "OutOfTheClosedDirectoryByItself", u"@/closed/out", Refused },
        { "OutOfTheClosedDirectoryToAFile", u"@/closed/out-file", Refused },
        { "OutOfTheClosedDirectoryReachedByALink", u"@/open/absolute/out-file", Refused },
        { "OutOfPlugins", u"@/plugins/out/a", Refused },
        { "StepsThroughALinkOutOfTheClosedDirectory", u"@/closed/out/../a", Refused },
        { "ThroughClosedAndOutBySteps", u"@/open/around/a", u"@/open/around/a" },
        { "Broken", u"@/open/broken-open/a", u"@/open/broken-open/a" },
        { "ToTheOneAbove", u"@/open/up/open/a", u"@/open/up/open/a" },
        { "LoopToItself", u"@/open/loop/a", u"@/open/loop/a" },
        { "LoopOfTwo", u"@/open/ping/a", u"@/open/ping/a" },
        { "LoopAndStepsIntoClosed", u"@/open/loop/../../closed/a", Refused },
        { "FortyInAChain", u"@/open/l1/a", Refused },
        { "ManyInOnePath", u"@" + times(39, u"/open/up") + u"/open/absolute/a", Refused },
        { "MoreThanTheSystemFollows", u"@" + times(40, u"/open/up") + u"/open/a",
            u"@" + times(40, u"/open/up") + u"/open/a" },
        { "BehindAWayTooLongToSpell", u"@/deep/one/two/in/a", Refused },
    });

PATHS(Names,
    {
        { "Empty", u"", Refused },
        { "Relative", u"a", Refused },
        { "Dot", u".", Refused },
        { "Root", u"/", u"/" },
        { "ManySlashes", u"////", u"/" },
        { "ClosedItself", u"@/closed", Refused },
        { "ClosedWithASlash", u"@/closed/", Refused },
        { "ClosedWithADot", u"@/closed/.", Refused },
        { "ClosedWithSlashes", u"@//closed///a", Refused },
        { "ClosedWithDots", u"@/./closed/./a", Refused },
        { "ClosedDeepBelow", u"@/closed/deep/er/not/there", Refused },
        { "ClosedByTheNameThatIsALink", u"@/moved/a", Refused },
        { "ClosedByWhereTheLinkLeads", u"@/store/a", Refused },
        { "ClosedAndNotThereYet", u"@/later/a", Refused },
        { "ClosedWithANameOfAllPlanes", u"@/\u00fcber \u4e2d \U0001f512/a", Refused },
        { "Plugins", u"@/plugins/a", Refused },
        { "PluginsItself", u"@/plugins", Refused },
        { "AboveClosed", u"@", u"@" },
        { "SameBeginning", u"@/closed-not/a", u"@/closed-not/a" },
        { "SameBeginningAsPlugins", u"@/plugins2", u"@/plugins2" },
        { "BeginningOfClosed", u"@/close", u"@/close" },
        { "InUpperCase", u"@/CLOSED/a", u"@/CLOSED/a" },
        { "InMixedCaseAndNotThere", u"@/Closed/a", u"@/Closed/a" },
        { "TrailingSpace", u"@/closed /a", u"@/closed /a" },
        { "TrailingDot", u"@/closed./a", u"@/closed./a" },
        { "LeadingSpace", u"@/ closed/a", u"@/ closed/a" },
        { "SpaceBeforeAnAbsolutePath", u" @/open/a", Refused },
        { "Tab", u"@/clo\tsed/a", u"@/clo\tsed/a" },
        { "TrailingNewline", u"@/closed\n", u"@/closed\n" },
        { "NewlineBeforeClosed", u"@/open\n/../closed/a", Refused },
        { "CarriageReturn", u"@/open/a\r\nb", u"@/open/a\r\nb" },
        { "Quotes", u"@/open/\"a' `b`", u"@/open/\"a' `b`" },
        { "Backslash", u"@/open\\..\\..\\closed", u"@/open\\..\\..\\closed" },
        { "NulAlone", u"\0"s, Refused },
        { "NulInFront", u"\0@/open/a"s, Refused },
        { "NulAtTheEnd", u"@/open/a\0"s, Refused },
        { "NulHidesWhatStandsBehind", u"@/closed\0/../open/a"s, Refused },
        { "Decomposed", u"@/u\u0308ber \u4e2d \U0001f512/a", u"@/u\u0308ber \u4e2d \U0001f512/a" },
        { "Combining", u"@/closed\u0301/a", u"@/closed\u0301/a" },
        { "ZeroWidth", u"@/clo\u200bsed/a", u"@/clo\u200bsed/a" },
        { "RightToLeft", u"@/\u202edesolc\u202c/\u05d0\u0627", u"@/\u202edesolc\u202c/\u05d0\u0627" },
        { "Lookalike", u"@/\u0441l\u043esed/a", u"@/\u0441l\u043esed/a" },
        { "SlashLookalike", u"@/open\u2215..\uff0fclosed", u"@/open\u2215..\uff0fclosed" },
        { "Astral", u"@/\U0001f600\U000e0041\U0010fffd", u"@/\U0001f600\U000e0041\U0010fffd" },
        { "AstralBeforeStepsIntoClosed", u"@/\U0001f600/../closed", Refused },
        { "Noncharacters", u"@/open/\ufffe\uffff\ufdd0", u"@/open/\ufffe\uffff\ufdd0" },
        { "ByteOrderMark", u"\ufeff@/closed/a", Refused },
        { "HighSurrogateAlone", u"@/open/x\xd800", Refused },
        { "LowSurrogateAlone", u"@/open/x\xdc00", Refused },
        { "SurrogateThatIsWrittenAsTheNameOfALink", u"@/open/\xd800/a", Refused },
        { "SurrogateBehindAVariable", u"%P_ROOT%/open/\xd800", Refused },
        { "NameOf255Bytes", u"@/open/" + std::u16string(255, u'n'), u"@/open/" + std::u16string(255, u'n') },
        { "NameOf256Bytes", u"@/open/" + std::u16string(256, u'n'), u"@/open/" + std::u16string(256, u'n') },
        { "TooLongANameAndStepsIntoClosed", u"@/" + std::u16string(256, u'n') + u"/../closed/a", Refused },
        { "PathOf4095Bytes", u"@/open/\u00e4", u"@/open/\u00e4", 4095 },
        { "PathOf4096Bytes", u"@/open/\u00e4", Refused, 4096 },
        { "ClosedPathOf4096Bytes", u"@/closed", Refused, 4096 },
        { "StepsOf100000UnitsIntoClosed", u"@" + times(20000, u"/a/..") + u"/closed/a", Refused },
        { "StepsOf100000Units", u"@" + times(20000, u"/a/..") + u"/open", u"@/open" },
        { "NameOf100000Units", u"@/open/" + std::u16string(100000, u'n'), Refused },
        { "NamesOf100000Units", u"@/open" + times(50000, u"/n"), Refused },
        { "SlashesOf100000Units", u"@/open" + std::u16string(100000, u'/') + u"a", u"@/open/a" },
    });

PATHS(Forms,
    {
        { "Tilde", u"~/a", Refused },
        { "TildeOfAUser", u"~root/a", Refused },
        { "TildeInside", u"@/~/a", u"@/~/a" },
        { "Resource", u":/a", Refused },
        { "ResourceThatIsThere", u":/novaprofile/profile.schema.json", Refused },
        { "ResourceBehindSteps", u"../:/a", Refused },
        { "ResourceUrl", u"qrc:/a", Refused },
        { "ResourceUrlWithSlashes", u"qrc:///novaprofile/profile.schema.json", Refused },
        { "FileUrl", u"file://@/open/a", Refused },
        { "FileUrlOfOneSlash", u"file:@/open/a", Refused },
        { "FileUrlInUpperCase", u"FILE://@/open/a", Refused },
        { "FileUrlBehindASlash", u"/file://@/open/a", u"/file:@/open/a" },
        { "SearchPathOfTheProgram", u"world:open/file", Refused },
        { "Drive", u"C:/a", Refused },
        { "DriveWithBackslashes", u"C:\\a", Refused },
        { "Share", u"\\\\server\\share", Refused },
        { "ShareWithSlashes", u"//server/share", u"/server/share" },
        { "ProcRootIntoClosed", u"/proc/self/root@/closed/a", Refused },
        { "ProcRootTwiceIntoClosed", u"/proc/self/root/proc/self/root@/closed/a", Refused },
        { "ProcRootOfTheThreadIntoClosed", u"/proc/thread-self/root@/closed/a", Refused },
        { "ProcRoot", u"/proc/self/root@/open/a", u"/proc/self/root@/open/a" },
        { "ProcCurrentDirectory", u"/proc/self/cwd/a", Refused },
        { "ProcCurrentDirectoryByItself", u"/proc/self/cwd", Refused },
        { "ProcOpenDirectory", u"/proc/self/fd/99/a", Refused },
        { "DevOpenDirectory", u"/dev/fd/99/a", Refused },
        { "StepsBehindDevOpenDirectory", u"/dev/fd/99/../a", u"/dev/fd/a" },
    });
// clang-format on

class Figures : public testing::Environment {
    void TearDown() override
    {
        std::cout << "paths: " << refusedRows + passedRows << " rows, " << refusedRows << " refused, "
                  << passedRows << " passed" << std::endl;
        world.reset();
    }
};

} // namespace

int main(int argc, char** argv)
{
    // How names of files are written must not depend on who runs the test.
    qputenv("LC_ALL", "C.UTF-8");
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    testing::AddGlobalTestEnvironment(new Figures);
    return RUN_ALL_TESTS();
}
