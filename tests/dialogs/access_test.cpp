// The access manager, answered from the profile.
#include "suite/kaccessmanager.h"
#include "tests/dialogs/fixture.h"

namespace {

class Access : public DialogTest {
protected:
    Access()
    {
        makeFiles({ "granted/file", "granted/deep/file", "secret/file", "secret/deep/file", "deep/file" });
        const std::pair<const char*, const char*> links[] = { { "../secret", "granted/out" },
            { "../secret/deep", "granted/deep-out" }, { "granted", "in" }, { "nowhere", "granted/broken" } };
        for (const auto& [target, name] : links)
            EXPECT_TRUE(QFile::link(QString::fromLatin1(target), path(name)));
    }

    bool ask(const QString& file, int type, bool request) const
    {
        return GetAccessManager()->StartAccess(
            reinterpret_cast<const char16_t*>(file.utf16()), request, type, true);
    }
};

const char Yes[] = R"({"dialog": "access"})";
const char* const Unasked = nullptr;

const struct AccessRow {
    const char* name;
    const char* path; ///< below the data directory, unless it begins with '!'
    int type;
    const char* answers; ///< Unasked: the user is not to be asked
    bool access;
} Accesses[] = {
    { "Exists", "granted/file", 0, Unasked, true },
    { "Reads", "granted/file", 1, Unasked, true },
    { "Directory", "granted", 2, Unasked, true },
    { "ByALink", "in/file", 2, Unasked, true },
    { "NewFile", "granted/new", 2, Unasked, true },
    { "NewBelowNewFolders", "granted/new/a/b", 99, Unasked, true },
    { "ParentSteps", "granted/deep/../file", 2, Unasked, true },
    { "NothingToRead", "granted/new", 1, Yes, false },
    { "NothingThere", "granted/new", 0, Yes, false },
    { "BelowAFile", "granted/file/new", 2, Yes, false },
    { "BrokenLink", "granted/broken", 2, Yes, false },
    { "Relative", "!granted/file", 1, Yes, false },
    { "Empty", "!", 2, Yes, false },
    { "Elsewhere", "secret/file", 1, Unasked, false },
    { "LinkOut", "granted/out/file", 1, Unasked, false },
    { "NewBehindALinkOut", "granted/out/new", 2, Unasked, false },
    { "ParentStepsOut", "granted/../secret/file", 1, Unasked, false },
    { "ParentOfALinksTarget", "granted/deep-out/../file", 1, Unasked, false },
    { "UserRefuses", "secret/file", 1, R"({"accept": false})", false },
    { "NobodyAnswers", "secret/file", 1, "", false },
    { "UserAllows", "secret/file", 2, Yes, true },
    { "AnyAnswerFits", "secret/file", 1, R"({"dialog": "cloud"}, {})", true },
};

ROW_TEST(Access, IsGivenOrRefused, Accesses)
{
    const AccessRow& row = GetParam();
    useAnswers(row.answers ? row.answers : Yes);
    const QString file =
        row.path[0] == '!' ? QString::fromUtf8(row.path + 1) : path("") + u'/' + QString::fromUtf8(row.path);
    EXPECT_EQ(ask(file, row.type, row.answers), row.access);
    EXPECT_EQ(warnings().empty(), row.access) << warnings();
    EXPECT_FALSE(QFile::exists(path("granted/new")));
}

TEST_F(Access, TheUsersConsentHoldsForWhatWasAskedFor)
{
    useAnswers(Yes);
    EXPECT_TRUE(ask(path("granted/out/deep"), 1, true));
    EXPECT_TRUE(ask(path("secret/deep/file"), 1, false)) << "it covers the folder's files, by any name";
    EXPECT_FALSE(ask(path("secret/deep/file"), 2, false)) << "reading was allowed, not writing";
    EXPECT_FALSE(ask(path("secret/file"), 1, false));
    ASSERT_TRUE(QFile::remove(path("granted/out")) && QFile::link(path(""), path("granted/out")));
    EXPECT_FALSE(ask(path("granted/out/deep/file"), 1, false)) << "the link leads elsewhere now";
}

} // namespace
