// The dialogs that the library opens for a page.
#include "suite/ksyncfolderui.h"
#include "tests/dialogs/fixture.h"
#include "tests/support/library.h"

#include <QFileDialog>

namespace {

using support::Page;
using support::User;

class PageDialogs : public DialogTest {
protected:
    PageDialogs()
    {
        useProfile(R"({"dialogs": {"mode": "show"}, "access": {"granted": []}})");
        owner->setWindowTitle(QStringLiteral("page"));
        owner->show();
        owner->activateWindow();
        // An application that was told to exit opens no event loop until it has run again.
        QTimer::singleShot(0, [] { QCoreApplication::exit(); });
        QCoreApplication::exec();
    }
    ~PageDialogs() override { delete owner; }

    std::string call(Page& page, const char* member) const
    {
        return page.call("FileSystem", member, "{\"dir\": \"" + path("").toUtf8() + "\"}");
    }
    std::string call(const char* member) { return call(page, member); }

    QPointer<QWidget> owner = new QWidget;
    Page page { support::libraryCore() };
};

const struct DialogRow {
    const char* name;
    const char* member;
    QFileDialog::FileMode mode;
} Dialogs[] = {
    { "OneFile", "getOpenFileName", QFileDialog::ExistingFile },
    { "SeveralFiles", "getOpenFileNames", QFileDialog::ExistingFiles },
    { "Directory", "getExistingDirectory", QFileDialog::Directory },
    { "LocalFolder", "selectLocalFolder", QFileDialog::Directory },
};

ROW_TEST(PageDialogs, ShowWhatThePageAsksFor, Dialogs)
{
    const User user("look; escape", [this](QDialog& shown) {
        const auto& dialog = dynamic_cast<QFileDialog&>(shown);
        const bool directoriesOnly = GetParam().mode == QFileDialog::Directory;
        EXPECT_EQ(dialog.parentWidget(), owner) << "the active window owns the dialog of a page without one";
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("A caption"));
        EXPECT_EQ(dialog.directory().path(), path(""));
        EXPECT_EQ(dialog.fileMode(), GetParam().mode);
        EXPECT_EQ(dialog.testOption(QFileDialog::ShowDirsOnly), directoriesOnly);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_TRUE(directoriesOnly || dialog.nameFilters().value(0) == QLatin1String("Texts (*.txt)"));
    });
    page.call("FileSystem", GetParam().member,
        R"-({"caption": "A caption", "filter": "Texts (*.txt);;All (*)", "dir": ")-" + path("").toUtf8()
            + "\"}");
}

TEST_F(PageDialogs, EndAsCancelledWithTheirOwnerTheirPageOrTheEventLoop)
{
    {
        const User user("drop", {}, owner);
        EXPECT_EQ(call("getOpenFileName"), R"("")");
    }
    {
        const User user("look; wait", [this](QDialog&) { support::libraryCore().closePage(page.context); });
        EXPECT_EQ(call("getOpenFileName"), R"("")");
    }
    Page other(support::libraryCore());
    const User user("exit");
    EXPECT_EQ(call(other, "getOpenFileNames"), "[]");
}

TEST_F(PageDialogs, ReportAColourOnceAndAskNoMoreHoweverTheyEnd)
{
    const auto closePage = [](const Page& closed) {
        return [&](QDialog&) { support::libraryCore().closePage(closed.context); };
    };
    for (const char* const steps : { "confirm", "escape", "look; wait", "drop" }) {
        owner->activateWindow();
        QCoreApplication::processEvents();
        Page asking(support::libraryCore());
        std::vector<std::string> reports;
        const auto hear = [&](const JSApiArguments& report) {
            reports.push_back(support::json(report[0]));
            return KR_OK;
        };
        const User user(steps, closePage(asking), owner);
        EXPECT_EQ(asking.call(asking.object("Utils"), "pickColor",
                      { support::values(R"({"color": "#123456"})")[0],
                          support::function(asking.context, 1, hear) }),
            "true");
        while (reports.empty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const bool isPicked = steps == std::string("confirm");
        EXPECT_EQ(reports,
            std::vector<std::string> {
                isPicked ? R"({"accepted":true,"color":"#123456"})" : R"({"accepted":false})" })
            << steps;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << steps;
    }
    EXPECT_EQ(support::FakeFunction::alive, 0);
    const User user("look; wait", closePage(page));
    EXPECT_EQ(page.call("Tools", "showConfirmDlg", R"({"text": "?"})"), "-1");
}

TEST_F(PageDialogs, OfSyncFoldersEndWithTheirPage)
{
    Page asking(support::libraryCore());
    {
        QObject receiver; // hears nothing of the end
        EXPECT_TRUE(KSyncFolderUi::getInstance()->show(
            KSyncFolderDialog::Message, asking.context, {}, &receiver, QStringLiteral("none")));
    }
    const QPointer<QDialog> shown = owner->findChild<QDialog*>();
    ASSERT_TRUE(shown && shown->isVisible());
    asking.close();
    while (shown)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

TEST_F(PageDialogs, KeepThePageFromAsking)
{
    makeFiles({ "a.txt" });
    const QByteArray access = "{\"path\": \"" + path("a.txt").toUtf8() + "\"}";
    const User user("look; escape; box Yes", [&](QDialog&) {
        EXPECT_EQ(page.call("FileSystem", "startAccess", access), "false") << "the user was asked meanwhile";
    });
    call("getOpenFileName");
    EXPECT_EQ(page.call("FileSystem", "startAccess", access), "true") << "the user was not asked afterwards";
}

TEST_F(PageDialogs, AreOneAtATimeForAPage)
{
    Page other(support::libraryCore());
    std::vector<QDialog*> seen;
    const auto look = [&](QDialog& dialog) {
        seen.push_back(&dialog);
        if (seen.size() > 1)
            return;
        EXPECT_EQ(call("getOpenFileName"), R"("")");
        EXPECT_EQ(QApplication::activeModalWidget(), &dialog) << "a second dialog is open";
        call(other, "getOpenFileName");
    };
    {
        const User user("look; look; escape; escape", look);
        call("getOpenFileName");
    }
    ASSERT_EQ(seen.size(), 2u) << "another page got no dialog";
    EXPECT_NE(seen[0], seen[1]);
    const User again("look; escape", look);
    call("getOpenFileName");
    EXPECT_EQ(seen.size(), 3u) << "the page got no dialog any more";
}

} // namespace
