// Qt's own dialogs, answered from the profile.
#include "tests/dialogs/fixture.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>

namespace {

enum class Asks { File, Files, Folder, Save };

struct FileCase {
    const char* name;
    Asks asks;
    const char* answers;
    const char* chosen;  ///< below the data directory, separated by "|"
    const char* warning; ///< a part of it; empty: none is given
};

class FileDialogs : public DialogTest, public testing::WithParamInterface<FileCase> {
protected:
    FileDialogs()
    {
        makeFiles({ "a.txt", "b.txt", "c.md", ".hidden.txt", "sub folder/d.txt", "it's.txt", "say \"so\".txt",
            "new\nline.txt", "Grüße 文件 🙂.txt", " blank .txt", "~", "$HOME", "back\\slash.txt" });
        EXPECT_TRUE(QFile::link(path("sub folder"), path("link")));
    }

    QStringList ask(Asks what) const
    {
        const QString title = QStringLiteral("test");
        const QString filter = QStringLiteral("Text (*.txt)");
        switch (what) {
        case Asks::File:
            return { QFileDialog::getOpenFileName(nullptr, title, path("sub folder"), filter) };
        case Asks::Files:
            return QFileDialog::getOpenFileNames(nullptr, title, path(""), filter);
        case Asks::Folder:
            return { QFileDialog::getExistingDirectory(nullptr, title, path("")) };
        case Asks::Save:
            return { QFileDialog::getSaveFileName(nullptr, title, path("proposed.txt"), filter) };
        }
        return {};
    }
};

TEST_P(FileDialogs, AreAnswered)
{
    useAnswers(GetParam().answers);
    EXPECT_EQ(below(ask(GetParam().asks)), GetParam().chosen);
    EXPECT_EQ(warnings().empty(), GetParam().warning[0] == 0) << warnings();
    EXPECT_NE(warnings().find(GetParam().warning), std::string::npos) << warnings();
}

#define ODD_NAME(name, json, real)                                                                           \
    FileCase { #name "IsOpened", Asks::File, R"({"files": ["${DATA}/)" json R"("]})", "/" real, "" },        \
        FileCase                                                                                             \
    {                                                                                                        \
#name "IsOneOfSeveral", Asks::Files, R"({"files": ["${DATA}/)" json R"(", "${DATA}/a.txt"]})",       \
            "/" real "|/a.txt", ""                                                                           \
    }

INSTANTIATE_TEST_SUITE_P(Names, FileDialogs,
    testing::Values(ODD_NAME(Apostrophe, "it's.txt", "it's.txt"),
        ODD_NAME(Quotes, R"(say \"so\".txt)", "say \"so\".txt"),
        ODD_NAME(LineBreak, R"(new\nline.txt)", "new\nline.txt"),
        ODD_NAME(OtherScripts, "Grüße 文件 🙂.txt", "Grüße 文件 🙂.txt"),
        ODD_NAME(Blanks, " blank .txt", " blank .txt"), ODD_NAME(Tilde, "~", "~"),
        ODD_NAME(Variable, "$HOME", "$HOME"), ODD_NAME(Hidden, ".hidden.txt", ".hidden.txt"),
        ODD_NAME(Backslash, R"(back\\slash.txt)", "back\\slash.txt"),
        ODD_NAME(NotInTheFilter, "c.md", "c.md"),
        ODD_NAME(OtherFolder, "sub folder/d.txt", "sub folder/d.txt")),
    caseName<FileCase>);

INSTANTIATE_TEST_SUITE_P(Folders, FileDialogs,
    testing::Values(
        FileCase { "Below", Asks::Folder, R"({"files": ["${DATA}/sub folder"]})", "/sub folder", "" },
        FileCase { "BehindALink", Asks::Folder, R"({"files": ["${DATA}/link"]})", "/link", "" },
        FileCase { "Root", Asks::Folder, R"({"files": ["/"]})", "/", "" },
        FileCase { "Missing", Asks::Folder, R"({"files": ["${DATA}/none"]})", "", "/none\" is not there" },
        FileCase { "File", Asks::Folder, R"({"files": ["${DATA}/a.txt"]})", "", "is no folder" }),
    caseName<FileCase>);

INSTANTIATE_TEST_SUITE_P(Saving, FileDialogs,
    testing::Values(FileCase { "New", Asks::Save, R"({"files": ["${DATA}/sub folder/Bericht ä.txt"]})",
                        "/sub folder/Bericht ä.txt", "" },
        FileCase { "NewWithLineBreak", Asks::Save, R"({"files": ["${DATA}/x\ny.txt"]})", "/x\ny.txt", "" },
        FileCase { "NewWithQuotes", Asks::Save, R"({"files": ["${DATA}/x \"y\".txt"]})", "",
            "names can not be chosen" },
        FileCase { "Existing", Asks::Save, R"({"files": ["${DATA}/a.txt"]})", "", "overwritten" },
        FileCase { "InNoFolder", Asks::Save, R"({"files": ["${DATA}/none/a.txt"]})", "", "is not there" },
        FileCase { "Folder", Asks::Save, R"({"files": ["${DATA}/link"]})", "", "is a folder" }),
    caseName<FileCase>);

INSTANTIATE_TEST_SUITE_P(Choice, FileDialogs,
    testing::Values(FileCase { "NoneLeft", Asks::File, "", "", "no answer is left for a dialog \"file\"" },
        FileCase { "Cancel", Asks::File, R"({"accept": false, "files": ["${DATA}/a.txt"]})", "", "" },
        FileCase { "NoFiles", Asks::File, "{}", "", "has no \"files\"" },
        FileCase { "MissingFile", Asks::File, R"({"files": ["${DATA}/none"]})", "", "is not there" },
        FileCase { "OneOfSeveralMissing", Asks::Files, R"({"files": ["${DATA}/a.txt", "${DATA}/none"]})", "",
            "is not there" },
        FileCase {
            "TooMany", Asks::File, R"({"files": ["${DATA}/a.txt", "${DATA}/b.txt"]})", "", "takes one" },
        FileCase { "FirstThatFits", Asks::Files,
            R"({"dialog": "file", "files": ["${DATA}/a.txt"]}, {"dialog": "files", "files": ["${DATA}/b.txt"]},
               {"files": ["${DATA}/c.md"]})",
            "/b.txt", "" },
        FileCase { "OnlyOthers", Asks::Save, R"({"dialog": "file"}, {"dialog": "cloud"})", "", "\"save\"" }),
    caseName<FileCase>);

TEST_F(FileDialogs, TakeEachAnswerOnceAndANewProfileBeginsAnew)
{
    const QByteArray answers = R"({"files": ["${DATA}/a.txt"]}, {"files": ["${DATA}/b.txt"]})";
    for (int round = 0; round < 2; ++round) {
        useAnswers(answers);
        for (const char* expected : { "/a.txt", "/b.txt", "" })
            EXPECT_EQ(below(ask(Asks::File)), expected);
    }
}

TEST_F(FileDialogs, SeveralAtOnceAndWithinEachOther)
{
    useAnswers(R"({"files": ["${DATA}/a.txt"]}, {"files": ["${DATA}/b.txt"]}, {"files": ["${DATA}/c.md"]})");
    QFileDialog first(nullptr, {}, path(""));
    QFileDialog second(nullptr, {}, path(""));
    QStringList chosen;
    QStringList inner;
    QObject::connect(&first, &QFileDialog::fileSelected, [&](const QString& file) {
        chosen << file;
        inner = ask(Asks::File);
    });
    QObject::connect(&second, &QFileDialog::fileSelected, [&](const QString& file) { chosen << file; });
    first.show();
    second.open();
    while (first.isVisible() || second.isVisible())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(below(chosen), "/a.txt|/b.txt");
    EXPECT_EQ(below(inner), "/c.md");
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

TEST_F(FileDialogs, AMessageBoxInBetweenGetsItsDefault)
{
    struct {
        const char* name;
        QMessageBox::StandardButton preferred;
        bool dies;
        bool accepted;
    } const rows[] = {
        { "Yes", QMessageBox::Yes, false, true },
        { "No", QMessageBox::No, false, false },
        { "EscapeIsNo", QMessageBox::NoButton, false, false },
        { "TheDialogGoes", QMessageBox::Yes, true, false },
    };
    for (const auto& row : rows) {
        useAnswers(R"({"files": ["${DATA}/a.txt"]})");
        auto* dialog = new DoubtingDialog(nullptr, QString(), path(""));
        const QPointer<QFileDialog> open(dialog);
        dialog->preferred = row.preferred;
        dialog->dies = row.dies;
        EXPECT_EQ(dialog->exec() == QDialog::Accepted, row.accepted) << row.name;
        EXPECT_EQ(open.isNull(), row.dies) << row.name;
        EXPECT_NE(warnings().find("sure?"), std::string::npos) << row.name;
        delete open;
    }
    EXPECT_NE(warnings().find("did not take"), std::string::npos);
}

class StubbornDialog : public QDialog {
public:
    void reject() override { }
};

TEST_F(DialogTest, MessageBoxesAndOtherModalDialogsEnd)
{
    useAnswers("");
    const QString text = QStringLiteral("text");
    EXPECT_EQ(QMessageBox::information(nullptr, {}, text), QMessageBox::Ok);
    EXPECT_EQ(QMessageBox::question(nullptr, {}, text,
                  QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes),
        QMessageBox::Yes);
    EXPECT_EQ(
        QMessageBox::question(nullptr, {}, text, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel),
        QMessageBox::Cancel);
    // No button of it means escape.
    EXPECT_NE(
        QMessageBox::question(nullptr, {}, text, QMessageBox::Yes | QMessageBox::Save), QMessageBox::Yes);
    bool ok = true;
    QInputDialog::getText(nullptr, text, text, QLineEdit::Normal, {}, &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(StubbornDialog().exec(), QDialog::Rejected);
}

} // namespace
