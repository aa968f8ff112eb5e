// Dialogs that are shown, and used by the test as a user would.
#include "suite/kaccessmanager.h"
#include "suite/kcloudfiledialog.h"
#include "suite/kdownloadfiledialog.h"
#include "suite/kfilepanel.h"
#include "tests/dialogs/fixture.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTabWidget>
#include <QTest>

namespace {

/// What a user does, step by step, each in a turn of its own of whatever event loop runs then:
///   tab NAME        goes to a tab of the cloud dialog
///   pick PATH       clicks on an entry of its list; more PATH: with the control key
///   name TEXT       replaces the name, here and in a local file dialog
///   confirm, cancel press that button; enter, escape that key
///   box TEXT        presses the button of a message box that has this text
///   double PATH     clicks twice on an entry
///   drop            destroys the owner; exit tells the application to end
class User {
public:
    User(QString steps, QWidget* owner)
        : m_steps(steps.split(QStringLiteral("; "), Qt::SkipEmptyParts))
        , m_owner(owner)
    {
        next();
    }

private:
    void next()
    {
        // Behind what the step before has queued.
        QTimer::singleShot(0, &m_context, [this] { QTimer::singleShot(0, &m_context, [this] { step(); }); });
    }

    void step()
    {
        if (m_steps.isEmpty()) {
            EXPECT_FALSE(closeDialogs()) << "the steps left a dialog open";
            return;
        }
        const QString step = m_steps.takeFirst();
        next();
        act(step.section(QLatin1Char(' '), 0, 0), step.section(QLatin1Char(' '), 1));
    }

    static QWidget* window() { return QApplication::activeModalWidget(); }

    /// The tab in use, or the whole dialog when it has no tabs.
    static QWidget* page()
    {
        auto* tabs = window()->findChild<QTabWidget*>(QStringLiteral("tabs"));
        return tabs ? tabs->currentWidget() : window();
    }

    static QAbstractButton* button(QWidget* in, QDialogButtonBox::ButtonRole role)
    {
        for (auto* box : in->findChildren<QDialogButtonBox*>()) {
            for (QAbstractButton* found : box->buttons()) {
                if (box->buttonRole(found) == role)
                    return found;
            }
        }
        return nullptr;
    }

    static void press(QAbstractButton* button)
    {
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    static void pick(const QString& path, Qt::KeyboardModifiers modifiers, bool twice = false)
    {
        auto* list = page()->findChild<QListWidget*>(QStringLiteral("files"));
        ASSERT_NE(list, nullptr);
        const QList<QListWidgetItem*> items = list->findItems(path, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << path.toStdString();
        const QPoint place = list->visualItemRect(items.first()).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, place);
        if (twice)
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, modifiers, place);
    }

    static QLineEdit* nameLine()
    {
        auto* local = page()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        return local ? local : page()->findChild<QLineEdit*>(QStringLiteral("name"));
    }

    static void pressInBox(const QString& text)
    {
        for (auto* found : window()->findChildren<QAbstractButton*>()) {
            if (found->text().remove(QLatin1Char('&')) == text)
                return press(found);
        }
        FAIL() << "no button " << text.toStdString();
    }

    void act(const QString& verb, const QString& what)
    {
        if (verb == QLatin1String("drop"))
            return delete m_owner;
        if (verb == QLatin1String("exit"))
            return QCoreApplication::exit();
        ASSERT_NE(window(), nullptr) << verb.toStdString();
        if (verb == QLatin1String("tab")) {
            auto* tabs = window()->findChild<QTabWidget*>(QStringLiteral("tabs"));
            auto* wanted = window()->findChild<QWidget*>(what);
            ASSERT_NE(wanted, nullptr) << what.toStdString();
            tabs->setCurrentWidget(wanted);
        } else if (verb == QLatin1String("pick")) {
            pick(what, Qt::NoModifier);
        } else if (verb == QLatin1String("more")) {
            pick(what, Qt::ControlModifier);
        } else if (verb == QLatin1String("double")) {
            pick(what, Qt::NoModifier, true);
        } else if (verb == QLatin1String("name")) {
            ASSERT_NE(nameLine(), nullptr);
            nameLine()->setFocus();
            nameLine()->selectAll();
            nameLine()->insert(what); // as from the clipboard: nothing is completed
        } else if (verb == QLatin1String("enter")) {
            QTest::keyClick(nameLine(), Qt::Key_Return);
        } else if (verb == QLatin1String("escape")) {
            QTest::keyClick(window(), Qt::Key_Escape);
        } else if (verb == QLatin1String("confirm")) {
            press(button(page(), QDialogButtonBox::AcceptRole));
        } else if (verb == QLatin1String("cancel")) {
            press(button(page(), QDialogButtonBox::RejectRole));
        } else if (verb == QLatin1String("box")) {
            pressInBox(what);
        } else {
            FAIL() << verb.toStdString();
        }
    }

    QStringList m_steps;
    QPointer<QWidget> m_owner;
    QObject m_context; ///< steps that are left over end with the user
};

class Shown : public DialogTest {
protected:
    Shown()
    {
        makeFiles({ "a.txt", "b.txt", "folder/c.txt" });
        useProfile(R"({"dialogs": {"mode": "show"}, "access": {"granted": []}, "cloudFiles": [
            {"tab": "cloud", "path": "/Reports", "groupId": "g1", "parentId": "p0", "fileId": "f1", "folder": true},
            {"tab": "cloud", "path": "/Reports/May.odt", "groupId": "g1", "parentId": "f1", "fileId": "f2"},
            {"tab": "cloud", "path": "/Reports/June.txt", "groupId": "g2", "parentId": "f1", "fileId": "f3"},
            {"tab": "share", "path": "/Team", "groupId": "g9", "parentId": "p9", "fileId": "f9", "folder": true},
            {"tab": "recent", "path": "/Letter.txt", "fileId": "f4"}]})");
    }

    /// A step's text, with what stands for the data directory replaced.
    QString steps(const char* text) const
    {
        return QString::fromUtf8(text).replace(QLatin1String("DATA"), path(""));
    }
};

struct CloudCase {
    const char* name;
    bool open;
    const char* options; ///< JSON, beside a title and the data directory to begin in
    const char* steps;
    const char* answer; ///< files below the data directory and values; empty when cancelled
};

class CloudDialog : public Shown, public testing::WithParamInterface<CloudCase> { };

TEST_P(CloudDialog, GivesWhatTheUserChooses)
{
    IKCloudFileDialog* dialog = CreateCloudFileDialog(GetParam().open);
    dialog->SetOption(QStringLiteral("Title"), QStringLiteral("test"));
    dialog->SetOption(QStringLiteral("InitialDir"), path(""));
    dialog->SetOption(QStringLiteral("NoSuchOption"), 1);
    const QJsonObject options = QJsonDocument::fromJson(GetParam().options).object();
    for (const QString& key : options.keys())
        dialog->SetOption(key, options.value(key).toVariant());
    const User user(steps(GetParam().steps), nullptr);
    std::string answer;
    if (dialog->Exec(nullptr)) {
        answer = below(dialog->Files());
        for (const char* key : { "CloudFilePath", "CloudGroupIds", "CloudParentId", "DuplicateCloudFileId",
                 "DuplicateAction" }) {
            const QVariant value = dialog->Value(QString::fromLatin1(key));
            if (value.isValid())
                answer += ' ' + value.toStringList().join(QLatin1Char(',')).toStdString();
        }
    }
    dialog->Destroy();
    EXPECT_EQ(answer, GetParam().answer);
    EXPECT_EQ(read("a.txt"), "content");
}

INSTANTIATE_TEST_SUITE_P(Local, CloudDialog,
    testing::Values(CloudCase { "OpensAFile", true, "{}", "name a.txt; confirm", "/a.txt" },
        CloudCase { "OpensWithEnter", true, "{}", "name a.txt; enter", "/a.txt" },
        CloudCase {
            "EntersAFolder", true, "{}", "name folder; confirm; name c.txt; confirm", "/folder/c.txt" },
        CloudCase { "OpensSeveral", true, R"({"AllowMultiSel": true})", R"(name "a.txt" "b.txt"; confirm)",
            "/a.txt|/b.txt" },
        CloudCase { "InitialName", true, R"({"InitialName": "b.txt"})", "confirm", "/b.txt" },
        CloudCase {
            "MissingIsTold", true, "{}", "name no.txt; enter; box OK; name a.txt; confirm", "/a.txt" },
        CloudCase { "Cancels", true, "{}", "name a.txt; cancel", "" },
        CloudCase { "Escapes", true, "{}", "escape", "" },
        CloudCase {
            "SavesNew", false, R"({"IsConfirmOverwrite": true})", "name new.txt; confirm", "/new.txt" },
        CloudCase { "AsksToOverwrite", false, R"({"IsConfirmOverwrite": true})",
            "name a.txt; confirm; box No; confirm; box Yes", "/a.txt" },
        CloudCase { "OverwritesUnasked", false, "{}", "name a.txt; confirm", "/a.txt" },
        CloudCase {
            "ChoosesAFolder", true, R"({"IsOpenDirDialog": true})", "name folder; confirm", "/folder" },
        CloudCase { "RefusesTheRoot", true, R"({"IsOpenDirDialog": true, "InitialDir": "/"})",
            "confirm; box OK; cancel", "" },
        CloudCase { "AllowsTheRoot", true,
            R"({"IsOpenDirDialog": true, "InitialDir": "/", "AllowSelRoot": true})", "confirm", "/" }),
    caseName<CloudCase>);

#define CLOUD "\"IsShowCloudTab\": true, \"CloudAsInitialDir\": true"
#define SAVE_NEW CLOUD ", \"SaveNewCloudFile\": true"

INSTANTIATE_TEST_SUITE_P(Cloud, CloudDialog,
    testing::Values(CloudCase { "OpensAFile", true, "{" CLOUD "}", "pick /Reports/May.odt; confirm",
                        " /Reports/May.odt g1 f1" },
        CloudCase {
            "OpensWithTwoClicks", true, "{" CLOUD "}", "double /Reports/May.odt", " /Reports/May.odt g1 f1" },
        CloudCase { "GivesItsPath", true, "{" CLOUD R"(, "returnFilePath": true})",
            "pick /Reports/May.odt; confirm", "/Reports/May.odt /Reports/May.odt g1 f1" },
        CloudCase { "OpensSeveral", true, "{" CLOUD R"(, "AllowMultiSel": true})",
            "pick /Reports/May.odt; more /Reports/June.txt; confirm",
            " /Reports/May.odt,/Reports/June.txt g1,g2 f1" },
        CloudCase { "OpensOneOfTwo", true, "{" CLOUD "}",
            "pick /Reports/May.odt; more /Reports/June.txt; confirm", " /Reports/June.txt g2 f1" },
        CloudCase { "NothingToConfirm", true, "{" CLOUD "}", "confirm; cancel", "" },
        CloudCase { "OtherTab", true, R"({"IsShowRecentTab": true, "IsHideLocalTab": true})",
            "pick /Letter.txt; confirm", " /Letter.txt  " },
        CloudCase { "LocalTabComesFirst", true, R"({"IsShowRecentTab": true, "IsShowCloudTab": true})",
            "name a.txt; confirm", "/a.txt" },
        CloudCase { "SwitchesTabs", true, R"({"IsOpenDirDialog": true, "IsShowShareFolderTab": true})",
            "tab share; pick /Team; confirm", " /Team g9 p9" },
        CloudCase { "Root", true, "{" CLOUD R"(, "IsOpenDirDialog": true, "AllowSelRoot": true})", "confirm",
            " /  " },
        CloudCase { "NoRoot", true, "{" CLOUD R"(, "IsOpenDirDialog": true})", "confirm; cancel", "" },
        CloudCase { "SavesNewAtTheRoot", false, "{" SAVE_NEW R"(, "InitialName": "new.txt"})", "confirm",
            " /new.txt  " },
        CloudCase { "SavesNewInAFolder", false, "{" SAVE_NEW "}", "pick /Reports; name July.txt; confirm",
            " /Reports/July.txt g1 f1" },
        CloudCase { "NoNewNameThatIsAPath", false, "{" SAVE_NEW "}", "name a/b.txt; confirm; cancel", "" },
        CloudCase { "NoNewNameOfAFolder", false, "{" SAVE_NEW "}", "name Reports; confirm; cancel", "" },
        CloudCase { "Overwrites", false, "{" CLOUD "}", "pick /Reports/May.odt; confirm; box Overwrite",
            " /Reports/May.odt g1 f1 f2 overwrite" },
        CloudCase { "Renames", false, "{" SAVE_NEW "}", "pick /Reports; name May.odt; confirm; box Rename",
            " /Reports/May.odt g1 f1 f2 rename" },
        CloudCase {
            "ThinksAgain", false, "{" CLOUD "}", "pick /Reports/May.odt; confirm; box Cancel; cancel", "" }),
    caseName<CloudCase>);

TEST_F(Shown, TheCloudDialogLooksAsItsOptionsSay)
{
    IKCloudFileDialog* dialog = CreateCloudFileDialog(true);
    for (const char* text : { "Title", "ConfirmButton", "AppName", "BusinessFrom" })
        dialog->SetOption(QString::fromLatin1(text), QStringLiteral("my ") + QString::fromLatin1(text));
    dialog->SetOption(QStringLiteral("Filters"), QStringLiteral("Images (*.png);;Texts (*.md *.txt)"));
    for (const char* tab :
        { "IsShowRecentTab", "IsShowCloudTab", "IsShowFavoriteTab", "IsShowCompanyCloudTab" })
        dialog->SetOption(QString::fromLatin1(tab), true);
    QTimer::singleShot(0, [] {
        QWidget* window = QApplication::activeModalWidget();
        EXPECT_EQ(window->windowTitle(), QStringLiteral("my Title"));
        EXPECT_EQ(window->accessibleDescription(), QStringLiteral("my AppName, my BusinessFrom"));
        auto* tabs = window->findChild<QTabWidget*>(QStringLiteral("tabs"));
        QStringList names;
        for (int i = 0; i < tabs->count(); ++i) {
            names << tabs->widget(i)->objectName();
            const auto buttons = tabs->widget(i)->findChildren<QAbstractButton*>();
            EXPECT_TRUE(std::any_of(buttons.begin(), buttons.end(), [](const QAbstractButton* button) {
                return button->text() == QLatin1String("my ConfirmButton");
            })) << names.last().toStdString();
        }
        EXPECT_EQ(names.join(QLatin1Char(' ')).toStdString(), "recent cloud favorite company local");
        auto* list = window->findChild<QWidget*>(QStringLiteral("cloud"))->findChild<QListWidget*>();
        ASSERT_EQ(list->count(), 1) << "of the cloud's files one passes the filters";
        EXPECT_EQ(list->item(0)->text(), QStringLiteral("/Reports/June.txt"));
        static_cast<QDialog*>(window)->reject();
    });
    EXPECT_FALSE(dialog->Exec(nullptr));
    dialog->Destroy();
}

TEST_F(Shown, DownloadsStayUntilTheNameCanBeWrittenTo)
{
    struct {
        const char* name;
        const char* dir;
        const char* steps;
        const char* chosen;
    } const rows[] = {
        { "Proposed", "DATA/new.txt", "confirm", "/new.txt" },
        { "Existing", "DATA", "name a.txt; confirm; box No; confirm; box Yes", "/a.txt" },
        { "NoFolder", "DATA", "name none/x; confirm; box OK; name x; confirm", "/x" },
        { "Cancelled", "DATA/new.txt", "cancel", "" },
    };
    for (const auto& row : rows) {
        const User user(steps(row.steps), nullptr);
        const QString name = KDownloadFileDialog::getWritableFileName(
            nullptr, QStringLiteral("test"), steps(row.dir), QStringLiteral("Text (*.txt)"));
        EXPECT_EQ(below({ name }), row.chosen) << row.name;
    }
}

TEST_F(Shown, ThePanelHonoursItsOptions)
{
    struct {
        const char* name;
        const char* options;
        const char* isOpen;
        const char* steps;
        const char* chosen;
    } const rows[] = {
        { "One", "{}", "1", "name b.txt; confirm", "/b.txt" },
        { "Several", R"({"multiple": true})", "1", R"(name "a.txt" "b.txt"; confirm)", "/a.txt|/b.txt" },
        { "Save", "{}", "0", "name new.txt; confirm", "/new.txt" },
        { "Cancelled", "{}", "1", "name b.txt; cancel", "" },
    };
    for (const auto& row : rows) {
        QVariantMap options = QJsonDocument::fromJson(row.options).object().toVariantMap();
        options.insert(QStringLiteral("dir"), path(""));
        options.insert(QStringLiteral("filter"), QStringLiteral("Text (*.txt)"));
        const User user(steps(row.steps), nullptr);
        const QVariantMap answer = GetFilePanel()->Show(QStringLiteral("part"),
            { { QStringLiteral("IsOpen"), QString::fromLatin1(row.isOpen) } }, options, nullptr);
        EXPECT_EQ(below(answer.value(QStringLiteral("files")).toStringList()), row.chosen) << row.name;
        EXPECT_EQ(answer.size(), row.chosen[0] ? 2 : 0) << row.name;
    }
}

TEST_F(Shown, AccessIsAskedForAndItsRefusalShown)
{
    const auto ask = [&](bool tip) {
        return GetAccessManager()->StartAccess(
            reinterpret_cast<const char16_t*>(path("a.txt").utf16()), true, 2, tip);
    };
    {
        const User user(QStringLiteral("box No; box OK; box No"), nullptr);
        EXPECT_FALSE(ask(true));
        EXPECT_FALSE(ask(false)) << "without a further box";
    }
    const User user(QStringLiteral("box Yes"), nullptr);
    EXPECT_TRUE(ask(true));
    EXPECT_TRUE(ask(true)) << "the user is asked once";
}

/// Each true when something was chosen.
using Service = bool (*)(QWidget* owner, const QString& dir);

bool openCloudDialog(QWidget* owner, bool open, const QString& dir)
{
    IKCloudFileDialog* dialog = CreateCloudFileDialog(open);
    dialog->SetOption(QStringLiteral("InitialDir"), dir);
    dialog->SetOption(QStringLiteral("IsShowCloudTab"), true);
    const bool chosen = dialog->Exec(owner) || !dialog->Files().isEmpty()
        || dialog->Value(QStringLiteral("CloudFilePath")).isValid();
    dialog->Destroy();
    return chosen;
}

bool opens(QWidget* owner, const QString& dir)
{
    return openCloudDialog(owner, true, dir);
}

bool saves(QWidget* owner, const QString& dir)
{
    return openCloudDialog(owner, false, dir);
}

bool showsPanel(QWidget* owner, const QString& dir)
{
    return !GetFilePanel()->Show({}, {}, { { QStringLiteral("dir"), dir } }, owner).isEmpty();
}

bool downloads(QWidget* owner, const QString& dir)
{
    return !KDownloadFileDialog::getWritableFileName(owner, {}, dir, {}).isEmpty();
}

struct EndCase {
    const char* name;
    Service service;
    const char* steps; ///< until the owner goes or the application ends
};

class Ends : public Shown, public testing::WithParamInterface<EndCase> { };

TEST_P(Ends, AsCancelledWithItsOwnerOrTheApplication)
{
    for (const char* end : { "; drop", "; exit" }) {
        auto* owner = new QWidget;
        const QPointer<QWidget> alive(owner);
        int returned = 0;
        // Within an event loop, as a page calls it; the application may leave that one as well.
        QTimer::singleShot(0, [&] {
            const User user(steps(GetParam().steps) + QString::fromLatin1(end), owner);
            EXPECT_FALSE(GetParam().service(owner, path("")));
            ++returned;
            QCoreApplication::exit();
        });
        QCoreApplication::exec();
        EXPECT_EQ(returned, 1);
        EXPECT_EQ(alive.isNull(), end == std::string("; drop"));
        delete alive;
    }
}

INSTANTIATE_TEST_SUITE_P(Shown, Ends,
    testing::Values(EndCase { "Opening", opens, "" }, EndCase { "Panel", showsPanel, "" },
        EndCase { "Download", downloads, "" }, EndCase { "OpeningTells", opens, "name none/x; enter" },
        EndCase { "PanelTells", showsPanel, "name none/x; enter" },
        EndCase { "DownloadAsks", downloads, "name a.txt; enter" },
        EndCase { "SavingAsks", saves, "tab cloud; double /Reports/May.odt" }),
    caseName<EndCase>);

} // namespace
