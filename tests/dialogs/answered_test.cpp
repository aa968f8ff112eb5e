// Qt's own dialogs and the suite's, answered from the profile.
#include "host/suite/dialogs/dialoganswers.h"
#include "suite/kaccessmanager.h"
#include "suite/kcloudfiledialog.h"
#include "suite/kdownloadfiledialog.h"
#include "suite/kfilepanel.h"
#include "tests/dialogs/fixture.h"
#include "tests/support/values.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <unistd.h>

namespace {

class Answered : public DialogTest {
protected:
    Answered()
    {
        makeFiles({ "a.txt", "b.txt", "c.md", "sub folder/d.txt", "locked" });
        EXPECT_TRUE(QFile::link(path("sub folder"), path("link")));
        EXPECT_TRUE(QFile::setPermissions(path("locked"), QFile::ReadOwner));
    }

    /// What one of them gives: "file", "files", "folder", "save", or the suite's "cloud", "download".
    std::string ask(const std::string& dialog) const
    {
        const QString title = QStringLiteral("test");
        const QString filter = QStringLiteral("Text (*.txt)");
        if (dialog == "file")
            return below({ QFileDialog::getOpenFileName(nullptr, title, path("sub folder"), filter) });
        if (dialog == "files")
            return below(QFileDialog::getOpenFileNames(nullptr, title, path(""), filter));
        if (dialog == "folder")
            return below({ QFileDialog::getExistingDirectory(nullptr, title, path("")) });
        if (dialog == "save")
            return below({ QFileDialog::getSaveFileName(nullptr, title, path("proposed.txt"), filter) });
        if (dialog == "download")
            return below({ KDownloadFileDialog::getWritableFileName(nullptr, {}, {}, {}) });
        IKCloudFileDialog* cloud = CreateCloudFileDialog(true);
        const bool accepted = cloud->Exec(nullptr);
        const QVariant value = cloud->Value(QStringLiteral("CloudGroupIds"));
        const QString text = QLatin1String(value.typeName())
            + (value.canConvert<QString>() ? value.toString() : value.toStringList().join(u','));
        const std::string chosen = (accepted ? "yes " : "") + below(cloud->Files()) + text.toStdString();
        EXPECT_FALSE(cloud->Exec(nullptr)) << "a second time";
        cloud->Destroy();
        return chosen;
    }
};

// "@" stands for the data directory.
const struct AnswerRow {
    const char* name;
    const char* dialog;
    const char* answers;
    const char* chosen;  ///< below the data directory, separated by "|"
    const char* warning; ///< a part of it; empty: none is given
} Answers[] = {
    { "FolderBelow", "folder", R"({"files": ["@/sub folder"]})", "/sub folder", "" },
    { "FolderBehindALink", "folder", R"({"files": ["@/link"]})", "/link", "" },
    { "FolderThatIsTheRoot", "folder", R"({"files": ["/"]})", "/", "" },
    { "MissingFolder", "folder", R"({"files": ["@/none"]})", "", "/none\" is not there" },
    { "FolderThatIsAFile", "folder", R"({"files": ["@/a.txt"]})", "", "is no folder" },
    { "SaveNew", "save", R"({"files": ["@/sub folder/Bericht ä.txt"]})", "/sub folder/Bericht ä.txt", "" },
    { "SaveNewWithLineBreak", "save", R"({"files": ["@/x\ny.txt"]})", "/x\ny.txt", "" },
    { "SaveNewWithQuotes", "save", R"({"files": ["@/x \"y\".txt"]})", "", "names can not be chosen" },
    { "SaveExisting", "save", R"({"files": ["@/a.txt"]})", "", "overwritten" },
    { "SaveInNoFolder", "save", R"({"files": ["@/none/a.txt"]})", "", "is not there" },
    { "SaveFolder", "save", R"({"files": ["@/link"]})", "", "is a folder" },
    { "NoneLeft", "file", "", "", "no answer is left for a dialog \"file\"" },
    { "Cancel", "file", R"({"accept": false, "files": ["@/a.txt"]})", "", "" },
    { "NoFiles", "file", "{}", "", "has no \"files\"" },
    { "MissingFile", "file", R"({"files": ["@/none"]})", "", "is not there" },
    { "OneOfSeveralMissing", "files", R"({"files": ["@/a.txt", "@/none"]})", "", "is not there" },
    { "TooMany", "file", R"({"files": ["@/a.txt", "@/b.txt"]})", "", "takes one" },
    { "FirstThatFits", "files", R"({"dialog": "file"}, {"dialog": "files", "files": ["@/b.txt"]}, {})",
        "/b.txt", "" },
    { "OnlyOthers", "save", R"({"dialog": "file"}, {"dialog": "cloud"})", "", "\"save\"" },
    { "CloudFiles", "cloud", R"({"files": ["@/a", "@/b"]}, {})", "yes /a|/b", "" },
    { "CloudValues", "cloud", R"({"values": {"CloudGroupIds": ["7", "8"]}})", "yes QVariantList7,8", "" },
    { "CloudNumber", "cloud", R"({"dialog": "cloud", "values": {"CloudGroupIds": 7}})", "yes int7", "" },
    { "CloudLargeNumber", "cloud", R"({"values": {"CloudGroupIds": 9007199254740993}})",
        "yes qlonglong9007199254740993", "" },
    { "CloudCancelled", "cloud", R"({"accept": false, "files": ["@/a"]})", "", "" },
    { "CloudEmpty", "cloud", "{}", "", "neither" },
    { "CloudNoneLeft", "cloud", R"({"dialog": "file"})", "", "no answer is left" },
    { "DownloadNew", "download", R"({"files": ["@/new"]})", "/new", "" },
    { "DownloadOld", "download", R"({"dialog": "save", "files": ["@/a.txt"]})", "/a.txt", "" },
    { "DownloadReadOnly", "download", R"({"files": ["@/locked"]})", "", "can not be written" },
    { "DownloadFolder", "download", R"({"files": ["@/link"]})", "", "is a folder" },
    { "DownloadInNoFolder", "download", R"({"files": ["@/none/new"]})", "", "does not exist" },
    { "DownloadNoFiles", "download", "{}", "", "has no \"files\"" },
    { "DownloadCancelled", "download", R"({"accept": false, "files": ["@/new"]})", "", "" },
};

ROW_TEST(Answered, FromTheProfile, Answers)
{
    const AnswerRow& row = GetParam();
    if (geteuid() == 0 && std::string(row.name) == "DownloadReadOnly")
        GTEST_SKIP() << "root may write to anything";
    useAnswers(QByteArray(row.answers).replace('@', "${DATA}"));
    EXPECT_EQ(ask(row.dialog), row.chosen);
    expectWarning(row.warning);
    EXPECT_FALSE(QFile::exists(path("new")));
    EXPECT_EQ(read("a.txt"), "content");
}

TEST_F(Answered, ByOddNames)
{
    for (const char* name :
        { "it's.txt", "say \"so\".txt", "new\nline.txt", "Grüße 文件 🙂.txt", " blank .txt", "~",
            "$HOME", ".hidden.txt", "back\\slash.txt", "not in the filter.md", "sub folder/e.txt" }) {
        makeFiles({ name });
        const QStringList files { path(name), path("a.txt") };
        const auto answer = [](const QStringList& chosen) {
            return QByteArray::fromStdString(
                support::json(QVariantMap { { QStringLiteral("files"), chosen } }));
        };
        useAnswers(answer({ files[0] }) + ',' + answer(files));
        EXPECT_EQ(ask("file"), std::string("/") + name);
        EXPECT_EQ(ask("files"), std::string("/") + name + "|/a.txt");
    }
}

TEST_F(Answered, OnceEachAndANewProfileBeginsAnew)
{
    for (int round = 0; round < 2; ++round) {
        useAnswers(R"({"files": ["${DATA}/a.txt"]}, {"files": ["${DATA}/b.txt"]})");
        for (const char* expected : { "/a.txt", "/b.txt", "" })
            EXPECT_EQ(ask("file"), expected);
    }
}

TEST_F(Answered, SeveralAtOnceAndWithinEachOther)
{
    useAnswers(R"({"files": ["${DATA}/a.txt"]}, {"files": ["${DATA}/b.txt"]}, {"files": ["${DATA}/c.md"]})");
    QFileDialog first(nullptr, {}, path(""));
    QFileDialog second(nullptr, {}, path(""));
    QStringList chosen;
    std::string inner;
    QObject::connect(&first, &QFileDialog::fileSelected, [&](const QString& file) {
        chosen << file;
        inner = ask("file");
    });
    QObject::connect(&second, &QFileDialog::fileSelected, [&](const QString& file) { chosen << file; });
    first.show();
    second.open();
    while (first.isVisible() || second.isVisible())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(below(chosen), "/a.txt|/b.txt");
    EXPECT_EQ(inner, "/c.md");
}

/// Asks the user before it lets go, and stays for any answer but Yes.
class DoubtingDialog : public QFileDialog {
public:
    using QFileDialog::QFileDialog;
    QMessageBox::StandardButton preferred = QMessageBox::NoButton;
    bool dies = false;

protected:
    void accept() override
    {
        const auto answer = QMessageBox::question(
            nullptr, {}, QStringLiteral("sure?"), QMessageBox::Yes | QMessageBox::No, preferred);
        if (dies)
            delete this;
        else if (answer == QMessageBox::Yes)
            QFileDialog::accept();
    }
};

TEST_F(Answered, AMessageBoxInBetweenGetsItsDefault)
{
    const struct {
        QMessageBox::StandardButton preferred;
        bool dies;
        bool accepted;
    } rows[] = {
        { QMessageBox::Yes, false, true },
        { QMessageBox::No, false, false },
        { QMessageBox::NoButton, false, false }, // escape is No
        { QMessageBox::Yes, true, false },
    };
    for (const auto& row : rows) {
        useAnswers(R"({"files": ["${DATA}/a.txt"]})");
        auto* dialog = new DoubtingDialog(nullptr, QString(), path(""));
        const QPointer<QFileDialog> open(dialog);
        dialog->preferred = row.preferred;
        dialog->dies = row.dies;
        EXPECT_EQ(dialog->exec() == QDialog::Accepted, row.accepted) << row.preferred;
        EXPECT_EQ(open.isNull(), row.dies) << row.preferred;
        EXPECT_NE(warnings().find("sure?"), std::string::npos) << row.preferred;
        delete open;
    }
    EXPECT_NE(warnings().find("did not take"), std::string::npos);
}

TEST_F(Answered, MessageBoxesAndOtherModalDialogsEnd)
{
    class StubbornDialog : public QDialog {
        void reject() override { }
    };
    useAnswers("");
    const QString text = QStringLiteral("text");
    const auto three = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    EXPECT_EQ(QMessageBox::information(nullptr, {}, text), QMessageBox::Ok);
    EXPECT_EQ(QMessageBox::question(nullptr, {}, text, three, QMessageBox::Yes), QMessageBox::Yes);
    EXPECT_EQ(QMessageBox::question(nullptr, {}, text, three), QMessageBox::Cancel);
    // No button of it means escape.
    EXPECT_NE(
        QMessageBox::question(nullptr, {}, text, QMessageBox::Yes | QMessageBox::Save), QMessageBox::Yes);
    bool ok = true;
    QInputDialog::getText(nullptr, text, text, QLineEdit::Normal, {}, &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(StubbornDialog().exec(), QDialog::Rejected);
}

TEST_F(Answered, UnlessTheProfileShowsThem)
{
    useProfile("{}");
    EXPECT_TRUE(dialogs::areAnswered()) << "there is no display";
    useProfile(R"({"dialogs": {"mode": "show"}})");
    EXPECT_FALSE(dialogs::areAnswered());
    useProfile(R"({"services": {"cloudFileDialog": false, "filePanel": false, "accessManager": false}})");
    EXPECT_FALSE(CreateCloudFileDialog(true) || GetFilePanel() || GetAccessManager());
}

TEST_F(Answered, ThePanelGivesValuesAndFiles)
{
    const std::pair<const char*, const char*> rows[] = {
        { R"({"values": {"id": true, "more": {"n": [1, null]}}})", R"({"id":true,"more":{"n":[1,null]}})" },
        { R"({"dialog": "panel", "files": ["/x/y"], "values": {"files": 1}})", R"({"files":["/x/y"]})" },
        { R"({"accept": false, "values": {"id": 1}})", "{}" },
        { "", "{}" },
    };
    for (const auto& [answer, result] : rows) {
        useAnswers(answer);
        EXPECT_EQ(support::json(GetFilePanel()->Show(QStringLiteral("FileDialog"), {}, {}, nullptr)), result);
    }
}

} // namespace
