// The suite's dialogs, shown, and used by the test as a user would.
#include "host/suite/account/accountdialog.h"
#include "suite/kaccessmanager.h"
#include "suite/kcloudfiledialog.h"
#include "suite/kdownloadfiledialog.h"
#include "suite/kfilepanel.h"
#include "tests/dialogs/fixture.h"

namespace {

using support::User;

class Shown : public DialogTest {
protected:
    Shown()
    {
        makeFiles({ "a.txt", "b.txt", "folder/c.txt" });
        useProfile(R"({"dialogs": {"mode": "show"}, "access": {"granted": []}, "cloudFiles": [
            {"tab": "cloud", "path": "/Reports", "groupId": "g1", "parentId": "p0", "fileId": "f1",
             "folder": true},
            {"tab": "cloud", "path": "/Reports/May.odt", "groupId": "g1", "parentId": "f1", "fileId": "f2"},
            {"tab": "cloud", "path": "/Reports/June.txt", "groupId": "g2", "parentId": "f1", "fileId": "f3"},
            {"tab": "share", "path": "/Team", "groupId": "g9", "parentId": "p9", "fileId": "f9",
             "folder": true},
            {"tab": "recent", "path": "/Letter.txt", "fileId": "f4"}]})");
    }

    /// A cloud dialog that begins in the data directory, with options such as "AllowMultiSel InitialDir=/".
    IKCloudFileDialog* makeCloudDialog(bool open, const std::string& options) const
    {
        IKCloudFileDialog* dialog = CreateCloudFileDialog(open);
        dialog->SetOption(QStringLiteral("InitialDir"), path(""));
        for (const QString& option : QString::fromStdString(options).split(u' ', Qt::SkipEmptyParts)) {
            const bool isText = option.contains(u'=');
            dialog->SetOption(
                option.section(u'=', 0, 0), isText ? QVariant(option.section(u'=', 1)) : QVariant(true));
        }
        return dialog;
    }
};

constexpr bool Opens = true;
constexpr bool Saves = false;
#define CLOUD "IsShowCloudTab CloudAsInitialDir "
#define SAVE_NEW CLOUD "SaveNewCloudFile "

const struct CloudRow {
    const char* name;
    bool open;
    const char* options;
    const char* steps;
    const char* answer; ///< files below the data directory and values; empty when cancelled
} CloudRows[] = {
    { "OpensAFile", Opens, "NoSuchOption", "name a.txt; confirm", "/a.txt" },
    { "OpensWithEnter", Opens, "", "name a.txt; enter", "/a.txt" },
    { "EntersAFolder", Opens, "", "name folder; confirm; name c.txt; confirm", "/folder/c.txt" },
    { "OpensSeveral", Opens, "AllowMultiSel", R"(name "a.txt" "b.txt"; confirm)", "/a.txt|/b.txt" },
    { "InitialName", Opens, "InitialName=b.txt", "confirm", "/b.txt" },
    { "MissingFile", Opens, "", "name no.txt; enter; box OK; name a.txt; confirm", "/a.txt" },
    { "Cancels", Opens, "", "name a.txt; cancel", "" },
    { "Escapes", Opens, "", "escape", "" },
    { "SavesNew", Saves, "IsConfirmOverwrite", "name new.txt; confirm", "/new.txt" },
    { "AsksToOverwrite", Saves, "IsConfirmOverwrite", "name a.txt; confirm; box No; confirm; box Yes",
        "/a.txt" },
    { "OverwritesUnasked", Saves, "", "name a.txt; confirm", "/a.txt" },
    { "ChoosesAFolder", Opens, "IsOpenDirDialog", "name folder; confirm", "/folder" },
    { "RefusesTheRoot", Opens, "IsOpenDirDialog InitialDir=/", "confirm; box OK; cancel", "" },
    { "AllowsTheRoot", Opens, "IsOpenDirDialog InitialDir=/ AllowSelRoot", "confirm", "/" },
    { "CloudFile", Opens, CLOUD, "pick /Reports/May.odt; confirm", " /Reports/May.odt g1 f1" },
    { "TwoClicks", Opens, CLOUD, "double /Reports/May.odt", " /Reports/May.odt g1 f1" },
    { "ItsPath", Opens, CLOUD "returnFilePath", "pick /Reports/May.odt; confirm",
        "/Reports/May.odt /Reports/May.odt g1 f1" },
    { "SeveralCloudFiles", Opens, CLOUD "AllowMultiSel",
        "pick /Reports/May.odt; more /Reports/June.txt; confirm",
        " /Reports/May.odt,/Reports/June.txt g1,g2 f1" },
    { "OneOfTwo", Opens, CLOUD, "pick /Reports/May.odt; more /Reports/June.txt; confirm",
        " /Reports/June.txt g2 f1" },
    { "NothingToConfirm", Opens, CLOUD, "confirm; cancel", "" },
    { "OtherTab", Opens, "IsShowRecentTab IsHideLocalTab", "pick /Letter.txt; confirm", " /Letter.txt  " },
    { "LocalTabComesFirst", Opens, "IsShowRecentTab IsShowCloudTab", "name a.txt; confirm", "/a.txt" },
    { "SwitchesTabs", Opens, "IsOpenDirDialog IsShowShareFolderTab", "tab share; pick /Team; confirm",
        " /Team g9 p9" },
    { "Root", Opens, CLOUD "IsOpenDirDialog AllowSelRoot", "confirm", " /  " },
    { "NoRoot", Opens, CLOUD "IsOpenDirDialog", "confirm; cancel", "" },
    { "SavesNewAtTheRoot", Saves, SAVE_NEW "InitialName=new.txt", "confirm", " /new.txt  " },
    { "SavesNewInAFolder", Saves, SAVE_NEW, "pick /Reports; name July.txt; confirm",
        " /Reports/July.txt g1 f1" },
    { "NoNewNameThatIsAPath", Saves, SAVE_NEW, "name a/b.txt; confirm; cancel", "" },
    { "NoNewNameOfAFolder", Saves, SAVE_NEW, "name Reports; confirm; cancel", "" },
    { "Overwrites", Saves, CLOUD, "pick /Reports/May.odt; confirm; box Overwrite",
        " /Reports/May.odt g1 f1 f2 overwrite" },
    { "Renames", Saves, SAVE_NEW, "pick /Reports; name May.odt; confirm; box Rename",
        " /Reports/May.odt g1 f1 f2 rename" },
    { "ThinksAgain", Saves, CLOUD, "pick /Reports/May.odt; confirm; box Cancel; cancel", "" },
};

ROW_TEST(Shown, CloudDialog, CloudRows)
{
    IKCloudFileDialog* dialog = makeCloudDialog(GetParam().open, GetParam().options);
    const User user(GetParam().steps);
    std::string answer;
    if (dialog->Exec(nullptr)) {
        answer = below(dialog->Files());
        for (const char* key : { "CloudFilePath", "CloudGroupIds", "CloudParentId", "DuplicateCloudFileId",
                 "DuplicateAction" }) {
            const QVariant value = dialog->Value(QString::fromLatin1(key));
            if (value.isValid())
                answer += ' ' + value.toStringList().join(u',').toStdString();
        }
    }
    dialog->Destroy();
    EXPECT_EQ(answer, GetParam().answer);
    EXPECT_EQ(read("a.txt"), "content");
}

TEST_F(Shown, TheCloudDialogLooksAsItsOptionsSay)
{
    IKCloudFileDialog* dialog = makeCloudDialog(Opens,
        "Title=T ConfirmButton=Take AppName=App BusinessFrom=Part IsShowRecentTab IsShowCloudTab "
        "IsShowFavoriteTab "
        "IsShowCompanyCloudTab");
    dialog->SetOption(QStringLiteral("Filters"), QStringLiteral("Images (*.png);;Texts (*.md *.txt)"));
    const User user("look; escape", [](QDialog& window) {
        EXPECT_EQ(window.windowTitle(), QStringLiteral("T"));
        EXPECT_EQ(window.accessibleDescription(), QStringLiteral("App, Part"));
        auto* tabs = window.findChild<QTabWidget*>(QStringLiteral("tabs"));
        QStringList names;
        for (int i = 0; i < tabs->count(); ++i) {
            names << tabs->widget(i)->objectName();
            const auto buttons = tabs->widget(i)->findChildren<QAbstractButton*>();
            EXPECT_TRUE(std::any_of(buttons.begin(), buttons.end(), [](const QAbstractButton* button) {
                return button->text() == QLatin1String("Take");
            })) << names.last().toStdString();
        }
        EXPECT_EQ(names.join(u' ').toStdString(), "recent cloud favorite company local");
        auto* list = window.findChild<QWidget*>(QStringLiteral("cloud"))->findChild<QListWidget*>();
        ASSERT_EQ(list->count(), 1) << "of the cloud's files one passes the filters";
        EXPECT_EQ(list->item(0)->text(), QStringLiteral("/Reports/June.txt"));
    });
    EXPECT_FALSE(dialog->Exec(nullptr));
    dialog->Destroy();
}

TEST_F(Shown, DownloadsStayUntilTheNameCanBeWrittenTo)
{
    const struct {
        const char* proposed;
        const char* steps;
        const char* chosen;
    } rows[] = {
        { "new.txt", "confirm", "/new.txt" },
        { "", "name a.txt; confirm; box No; confirm; box Yes", "/a.txt" },
        { "", "name none/x; confirm; box OK; name x; confirm", "/x" },
        { "new.txt", "cancel", "" },
    };
    for (const auto& row : rows) {
        const User user(row.steps);
        const QString name = KDownloadFileDialog::getWritableFileName(
            nullptr, QStringLiteral("test"), path(row.proposed), QStringLiteral("Text (*.txt)"));
        EXPECT_EQ(below({ name }), row.chosen) << row.steps;
    }
}

TEST_F(Shown, ThePanelHonoursItsOptions)
{
    const struct {
        bool multiple;
        const char* isOpen;
        const char* steps;
        const char* chosen;
    } rows[] = {
        { false, "1", "name b.txt; confirm", "/b.txt" },
        { true, "1", R"(name "a.txt" "b.txt"; confirm)", "/a.txt|/b.txt" },
        { false, "0", "name new.txt; confirm", "/new.txt" },
        { false, "1", "name b.txt; cancel", "" },
    };
    for (const auto& row : rows) {
        const QVariantMap options { { QStringLiteral("multiple"), row.multiple },
            { QStringLiteral("dir"), path("") },
            { QStringLiteral("filter"), QStringLiteral("Text (*.txt)") } };
        const User user(row.steps);
        const QVariantMap answer = GetFilePanel()->Show(QStringLiteral("part"),
            { { QStringLiteral("IsOpen"), QString::fromLatin1(row.isOpen) } }, options, nullptr);
        EXPECT_EQ(below(answer.value(QStringLiteral("files")).toStringList()), row.chosen) << row.steps;
        EXPECT_EQ(answer.size(), row.chosen[0] ? 2 : 0) << row.steps;
    }
}

TEST_F(Shown, AccessIsAskedForAndItsRefusalShown)
{
    const auto ask = [&](bool tip) {
        return GetAccessManager()->StartAccess(
            reinterpret_cast<const char16_t*>(path("a.txt").utf16()), true, 2, tip);
    };
    {
        const User user("box No; box OK; box No");
        EXPECT_FALSE(ask(true));
        EXPECT_FALSE(ask(false)) << "without a further box";
    }
    {
        const User user("box Yes");
        EXPECT_TRUE(ask(true));
        EXPECT_TRUE(ask(true)) << "the user is asked once";
    }
    // A name can not write a question of its own, in whichever box it is shown.
    QStringList texts;
    const User user("look; box No; look; box OK",
        [&](QDialog& dialog) { texts << static_cast<QMessageBox&>(dialog).text(); });
    const QString hostile =
        path("a\"? \n\n\u202ellA\u2028/") + QString(2000, u'n') + QStringLiteral("/last.txt");
    GetAccessManager()->StartAccess(reinterpret_cast<const char16_t*>(hostile.utf16()), true, 2, true);
    for (const QString& text : texts) {
        EXPECT_TRUE(text.contains(QStringLiteral("/a\\\"? \\n\\n\\u202ellA\\u2028/nn")))
            << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("nn/last.txt\"")) && text.size() < 300)
            << text.toStdString();
    }
}

TEST_F(Shown, AccountsAreChosenOnceAndLater)
{
    const std::pair<const char*, const char*> rows[] = { { "confirm", "b" }, { "pick A; confirm", "a" },
        { "pick A; cancel", "" }, { "double A", "a" } };
    for (const auto& [steps, chosen] : rows) {
        std::vector<std::string> ids;
        const auto choice = [](const char* id, const char* label) {
            return suite::Choice { QString::fromLatin1(id), QString::fromLatin1(label) };
        };
        suite::choose({ profile::DialogKind::Login, QStringLiteral("Sign in"), QStringLiteral("userId"),
                          { choice("a", "A"), choice("b", "B") }, QStringLiteral("b"), true },
            [&](const QString& id) { ids.push_back(id.toStdString()); });
        EXPECT_TRUE(ids.empty()) << "the call returns while the dialog is shown";
        const User user(steps);
        while (!QApplication::topLevelWidgets().isEmpty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        EXPECT_EQ(ids, std::vector<std::string> { chosen }) << steps;
    }
}

/// Each true when something was chosen.
using Service = bool (*)(QWidget* owner, const QString& dir);

template <bool Open> bool showCloudDialog(QWidget* owner, const QString& dir)
{
    IKCloudFileDialog* dialog = CreateCloudFileDialog(Open);
    dialog->SetOption(QStringLiteral("InitialDir"), dir);
    dialog->SetOption(QStringLiteral("IsShowCloudTab"), true);
    const bool chosen = dialog->Exec(owner) || !dialog->Files().isEmpty()
        || dialog->Value(QStringLiteral("CloudFilePath")).isValid();
    dialog->Destroy();
    return chosen;
}

bool showPanel(QWidget* owner, const QString& dir)
{
    return !GetFilePanel()->Show({}, {}, { { QStringLiteral("dir"), dir } }, owner).isEmpty();
}

bool download(QWidget* owner, const QString& dir)
{
    return !KDownloadFileDialog::getWritableFileName(owner, {}, dir, {}).isEmpty();
}

const struct EndRow {
    const char* name;
    Service service;
    const char* steps; ///< until the owner goes or the application ends
} Ends[] = {
    { "Opening", showCloudDialog<Opens>, "" },
    { "Panel", showPanel, "" },
    { "Download", download, "" },
    { "OpeningTells", showCloudDialog<Opens>, "name none/x; enter; " },
    { "PanelTells", showPanel, "name none/x; enter; " },
    { "DownloadAsks", download, "name a.txt; enter; " },
    { "SavingAsks", showCloudDialog<Saves>, "tab cloud; double /Reports/May.odt; " },
};

ROW_TEST(Shown, EndsAsCancelledWithItsOwnerOrTheApplication, Ends)
{
    for (const std::string end : { "drop", "exit" }) {
        auto* owner = new QWidget;
        const QPointer<QWidget> alive(owner);
        int returned = 0;
        // Within an event loop, as a page calls it; the application may leave that one as well.
        QTimer::singleShot(0, [&] {
            const User user((GetParam().steps + end).c_str(), {}, owner);
            EXPECT_FALSE(GetParam().service(owner, path("")));
            ++returned;
            QCoreApplication::exit();
        });
        QCoreApplication::exec();
        EXPECT_EQ(returned, 1);
        EXPECT_EQ(alive.isNull(), end == "drop");
        delete alive;
    }
}

} // namespace
