// The suite's dialogs and the access manager, answered from the profile.
#include "host/suite/dialogs/dialoganswers.h"
#include "suite/kaccessmanager.h"
#include "suite/kcloudfiledialog.h"
#include "suite/kdownloadfiledialog.h"
#include "suite/kfilepanel.h"
#include "tests/dialogs/fixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <unistd.h>

namespace {

std::string json(const QVariantMap& values)
{
    return QJsonDocument(QJsonObject::fromVariantMap(values)).toJson(QJsonDocument::Compact).toStdString();
}

TEST_F(DialogTest, WithoutADisplayOnlyShowShows)
{
    useProfile("{}");
    EXPECT_TRUE(dialogs::areAnswered());
    useProfile(R"({"dialogs": {"mode": "show"}})");
    EXPECT_FALSE(dialogs::areAnswered());
    useProfile(R"({"dialogs": {"mode": "answer"}})");
    EXPECT_TRUE(dialogs::areAnswered());
}

TEST_F(DialogTest, ServicesThatAreOffAreNull)
{
    useProfile(R"({"services": {"cloudFileDialog": false, "filePanel": false, "accessManager": false}})");
    EXPECT_EQ(CreateCloudFileDialog(true), nullptr);
    EXPECT_EQ(GetFilePanel(), nullptr);
    EXPECT_EQ(GetAccessManager(), nullptr);
    useProfile("{}");
    EXPECT_NE(GetFilePanel(), nullptr);
}

struct AnswerCase {
    const char* name;
    const char* answers;
    const char* result;
    const char* warning;
};

class CloudAnswers : public DialogTest, public testing::WithParamInterface<AnswerCase> { };

TEST_P(CloudAnswers, AreGiven)
{
    useAnswers(GetParam().answers);
    IKCloudFileDialog* dialog = CreateCloudFileDialog(true);
    const bool accepted = dialog->Exec(nullptr);
    const QVariant value = dialog->Value(QStringLiteral("CloudGroupIds"));
    const QString text = value.toString() + value.toStringList().join(QLatin1Char(',')) + QLatin1Char(' ')
        + QLatin1String(value.typeName());
    EXPECT_EQ(
        (accepted ? "yes " : "no ") + below(dialog->Files()) + " " + text.toStdString(), GetParam().result);
    EXPECT_FALSE(dialog->Exec(nullptr)) << "a second time";
    dialog->Destroy();
    EXPECT_EQ(warnings().empty(), GetParam().warning[0] == 0);
    EXPECT_NE(warnings().find(GetParam().warning), std::string::npos) << warnings();
}

const char NothingChosen[] = "no   ";

INSTANTIATE_TEST_SUITE_P(Cloud, CloudAnswers,
    testing::Values(AnswerCase { "Files", R"({"files": ["${DATA}/a", "${DATA}/b"]}, {})", "yes /a|/b  ", "" },
        AnswerCase { "Values", R"({"dialog": "cloud", "values": {"CloudGroupIds": ["7", "8"]}})",
            "yes  7,8 QVariantList", "" },
        AnswerCase { "Number", R"({"values": {"CloudGroupIds": 7}})", "yes  7 int", "" },
        AnswerCase { "LargeNumber", R"({"values": {"CloudGroupIds": 9007199254740993}})",
            "yes  9007199254740993 qlonglong", "" },
        AnswerCase { "Cancelled", R"({"accept": false, "files": ["${DATA}/a"]})", NothingChosen, "" },
        AnswerCase { "Empty", "{}", NothingChosen, "neither" },
        AnswerCase { "NoneLeft", R"({"dialog": "file"})", NothingChosen, "no answer is left" }),
    caseName<AnswerCase>);

TEST_F(DialogTest, ThePanelGivesValuesAndFiles)
{
    struct {
        const char* answer;
        const char* result;
    } const rows[] = {
        { R"({"values": {"id": true, "more": {"n": [1, null]}}})", R"({"id":true,"more":{"n":[1,null]}})" },
        { R"({"dialog": "panel", "files": ["/x/y"], "values": {"files": 1}})", R"({"files":["/x/y"]})" },
        { R"({"accept": false, "values": {"id": 1}})", "{}" },
        { "", "{}" },
    };
    for (const auto& row : rows) {
        useAnswers(row.answer);
        EXPECT_EQ(json(GetFilePanel()->Show(QStringLiteral("FileDialog"), {}, {}, nullptr)), row.result);
    }
}

class DownloadAnswers : public DialogTest, public testing::WithParamInterface<AnswerCase> { };

TEST_P(DownloadAnswers, AreWritable)
{
    makeFiles({ "old", "folder/x", "locked" });
    ASSERT_TRUE(QFile::setPermissions(path("locked"), QFile::ReadOwner));
    if (geteuid() == 0 && std::string(GetParam().name) == "ReadOnly")
        GTEST_SKIP() << "root may write to anything";
    useAnswers(GetParam().answers);
    const QString name = KDownloadFileDialog::getWritableFileName(nullptr, {}, {}, {});
    EXPECT_EQ(below({ name }), GetParam().result);
    EXPECT_EQ(warnings().empty(), GetParam().warning[0] == 0);
    EXPECT_NE(warnings().find(GetParam().warning), std::string::npos) << warnings();
    EXPECT_FALSE(QFile::exists(path("new")));
    EXPECT_EQ(read("old"), "content");
}

INSTANTIATE_TEST_SUITE_P(Save, DownloadAnswers,
    testing::Values(AnswerCase { "New", R"({"files": ["${DATA}/new"]})", "/new", "" },
        AnswerCase { "Old", R"({"dialog": "save", "files": ["${DATA}/old"]})", "/old", "" },
        AnswerCase { "ReadOnly", R"({"files": ["${DATA}/locked"]})", "", "can not be written" },
        AnswerCase { "Folder", R"({"files": ["${DATA}/folder"]})", "", "is a folder" },
        AnswerCase { "NoFolder", R"({"files": ["${DATA}/none/new"]})", "", "does not exist" },
        AnswerCase { "NoFiles", "{}", "", "has no \"files\"" },
        AnswerCase { "Cancelled", R"({"accept": false, "files": ["${DATA}/new"]})", "", "" }),
    caseName<AnswerCase>);

struct AccessCase {
    const char* name;
    const char* path; ///< below the data directory, unless it begins with '!'
    int type;
    const char* answers; ///< null: the user is not to be asked
    bool access;
};

class Access : public DialogTest, public testing::WithParamInterface<AccessCase> {
protected:
    Access()
    {
        makeFiles({ "granted/file", "granted/deep/file", "secret/file", "secret/deep/file", "deep/file" });
        link("../secret", "granted/out");
        link("../secret/deep", "granted/deep-out");
        link("granted", "in");
        link("nowhere", "granted/broken");
    }

    bool ask(const QString& file, int type, bool request) const
    {
        return GetAccessManager()->StartAccess(
            reinterpret_cast<const char16_t*>(file.utf16()), request, type, true);
    }

private:
    void link(const char* target, const char* name) const
    {
        EXPECT_TRUE(QFile::link(QString::fromUtf8(target), path(name)));
    }
};

TEST_P(Access, IsGivenOrRefused)
{
    const AccessCase& row = GetParam();
    useAnswers(row.answers ? row.answers : R"({"dialog": "access"})");
    const QString file = row.path[0] == '!' ? QString::fromUtf8(row.path + 1)
                                            : path("") + QLatin1Char('/') + QString::fromUtf8(row.path);
    EXPECT_EQ(ask(file, row.type, row.answers != nullptr), row.access);
    EXPECT_EQ(warnings().empty(), row.access) << warnings();
    EXPECT_FALSE(QFile::exists(path("granted/new")));
}

const char Yes[] = R"({"dialog": "access"})";

INSTANTIATE_TEST_SUITE_P(Granted, Access,
    testing::Values(AccessCase { "Exists", "granted/file", 0, nullptr, true },
        AccessCase { "Reads", "granted/file", 1, nullptr, true },
        AccessCase { "Writes", "granted/file", 2, nullptr, true },
        AccessCase { "Directory", "granted", 2, nullptr, true },
        AccessCase { "ByALink", "in/file", 2, nullptr, true },
        AccessCase { "NewFile", "granted/new", 2, nullptr, true },
        AccessCase { "NewBelowNewFolders", "granted/new/a/b", 99, nullptr, true },
        AccessCase { "ParentSteps", "granted/deep/../file", 2, nullptr, true }),
    caseName<AccessCase>);

INSTANTIATE_TEST_SUITE_P(Refused, Access,
    testing::Values(AccessCase { "NothingToRead", "granted/new", 1, Yes, false },
        AccessCase { "NothingThere", "granted/new", 0, Yes, false },
        AccessCase { "BelowAFile", "granted/file/new", 2, Yes, false },
        AccessCase { "BrokenLink", "granted/broken", 2, Yes, false },
        AccessCase { "Relative", "!granted/file", 1, Yes, false }, AccessCase { "Empty", "!", 2, Yes, false },
        AccessCase { "Elsewhere", "secret/file", 1, nullptr, false },
        AccessCase { "LinkOut", "granted/out/file", 1, nullptr, false },
        AccessCase { "NewBehindALinkOut", "granted/out/new", 2, nullptr, false },
        AccessCase { "ParentStepsOut", "granted/../secret/file", 1, nullptr, false },
        AccessCase { "ParentOfALinksTarget", "granted/deep-out/../file", 1, nullptr, false },
        AccessCase { "UserRefuses", "secret/file", 1, R"({"accept": false})", false },
        AccessCase { "NobodyAnswers", "secret/file", 1, "", false }),
    caseName<AccessCase>);

INSTANTIATE_TEST_SUITE_P(Asked, Access,
    testing::Values(AccessCase { "UserAllows", "secret/file", 2, Yes, true },
        AccessCase { "AnyAnswerFits", "secret/file", 1, R"({"dialog": "cloud"}, {})", true }),
    caseName<AccessCase>);

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
