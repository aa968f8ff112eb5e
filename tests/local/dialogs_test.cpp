#include "framework/entry.h"
#include "host/profile/profile.h"
#include "host/vexlite/core.h"
#include "vexlite/jsapiutil.h"

#include <QApplication>
#include <QFileDialog>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

class SilentPage final : public vexlite::ScriptPage {
public:
    bool createPromise(std::int64_t) override { return true; }
    void settlePromise(std::int64_t, JSPromiseState, const KJSVariant&) override { }
};

/// A page whose calls open dialogs; what happens while one is open is queued before.
class PageDialogs : public testing::Test {
protected:
    PageDialogs()
        : core(vexlite::Core::start({}))
    {
        ExtensionFactoryMap factories;
        GetNovaExtensionJsApiObj(&factories);
        core.setFactories(factories);
        watchdog.setSingleShot(true);
        QObject::connect(&watchdog, &QTimer::timeout, [] {
            ADD_FAILURE() << "a dialog stayed open";
            QCoreApplication::exit();
        });
        watchdog.start(60000);
        owner->setWindowTitle(QStringLiteral("page"));
        owner->show();
        owner->activateWindow();
        // An application that was told to exit opens no event loop until it has run again.
        QTimer::singleShot(0, [] { QCoreApplication::exit(); });
        QCoreApplication::exec();
    }
    ~PageDialogs() override
    {
        delete owner;
        vexlite::Core::stop();
    }

    /// The data that a member answers to options, from a page of its own or the given one.
    QVariant call(const char16_t* member, const QVariantMap& options, const JSContextEnv* page = nullptr)
    {
        SilentPage own;
        const JSContextEnv context = page ? *page : core.openPage(&own, {});
        QVariant answer;
        {
            const vexlite::BoundObject files = core.bindObject(context, QStringLiteral("FileSystem"));
            std::int32_t index = 0;
            while (files.members->Name(index) != std::u16string_view(member))
                ++index;
            KJSVariant argument, result, exception;
            KJSApiUtil::ConvertQVariantToJSVariant(options, argument);
            JSApiArguments arguments(&argument, 1);
            core.call(files.object.get(), context, files.members->Id(index), JSAccess::Method, arguments,
                result, exception);
            KJSApiUtil::ConvertJSVariantToQVariant(result, answer);
        }
        if (!page)
            core.closePage(context);
        return answer.toMap().value(QStringLiteral("data"));
    }

    /// Has `action` done with the dialog that opens next, as soon as it is there.
    void meanwhile(std::function<void(QFileDialog&)> action)
    {
        auto* look = new QTimer(&scope);
        const QPointer<QWidget> before = QApplication::activeModalWidget();
        QObject::connect(look, &QTimer::timeout, [look, before, action] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog || dialog == before || !dialog->isVisible())
                return;
            look->stop();
            action(*dialog);
        });
        look->start(0);
    }

    QVariantMap inTemporary() const { return { { QStringLiteral("dir"), directory.path() } }; }

    vexlite::Core& core;
    QPointer<QWidget> owner = new QWidget;
    QObject scope;
    QTimer watchdog;
    QTemporaryDir directory;
};

struct DialogCase {
    const char* name;
    const char16_t* member;
    QFileDialog::FileMode mode;
    bool directoriesOnly;
};

class PageDialogKinds : public PageDialogs, public testing::WithParamInterface<DialogCase> { };

TEST_P(PageDialogKinds, ShowWhatThePageAsksFor)
{
    QVariantMap options = inTemporary();
    options.insert(QStringLiteral("caption"), QStringLiteral("A caption"));
    options.insert(QStringLiteral("filter"), QStringLiteral("Texts (*.txt);;All (*)"));
    bool seen = false;
    meanwhile([&](QFileDialog& dialog) {
        seen = true;
        EXPECT_EQ(dialog.parentWidget(), owner) << "the active window owns the dialog of a page without one";
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("A caption"));
        EXPECT_EQ(dialog.directory().path(), directory.path());
        EXPECT_EQ(dialog.fileMode(), GetParam().mode);
        EXPECT_EQ(dialog.testOption(QFileDialog::ShowDirsOnly), GetParam().directoriesOnly);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        if (!GetParam().directoriesOnly) {
            EXPECT_EQ(dialog.nameFilters().value(0), QStringLiteral("Texts (*.txt)"));
        }
        dialog.reject();
    });
    call(GetParam().member, options);
    EXPECT_TRUE(seen);
}

INSTANTIATE_TEST_SUITE_P(All, PageDialogKinds,
    testing::Values(DialogCase { "OneFile", u"getOpenFileName", QFileDialog::ExistingFile, false },
        DialogCase { "SeveralFiles", u"getOpenFileNames", QFileDialog::ExistingFiles, false },
        DialogCase { "Directory", u"getExistingDirectory", QFileDialog::Directory, true },
        DialogCase { "LocalFolder", u"selectLocalFolder", QFileDialog::Directory, true }),
    [](const auto& info) { return info.param.name; });

TEST_F(PageDialogs, EndAsCancelledWithTheirOwner)
{
    meanwhile([&](QFileDialog&) { delete owner; });
    EXPECT_EQ(call(u"getOpenFileName", inTemporary()), QVariant(QString()));
}

TEST_F(PageDialogs, EndWithTheEventLoop)
{
    meanwhile([](QFileDialog&) { QCoreApplication::exit(); });
    EXPECT_EQ(call(u"getOpenFileNames", inTemporary()).toStringList(), QStringList());
}

TEST_F(PageDialogs, EndWithTheirPage)
{
    SilentPage page;
    const JSContextEnv context = core.openPage(&page, {});
    meanwhile([&](QFileDialog&) { core.closePage(context); });
    EXPECT_EQ(call(u"getOpenFileName", inTemporary(), &context), QVariant(QString()));
}

TEST_F(PageDialogs, KeepThePageFromAsking)
{
    QFile file(directory.filePath(QStringLiteral("profile.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"access": {"granted": []}, "dialogs": {"mode": "answer", "answers": [{"dialog": "access"}]}})");
    file.close();
    ASSERT_EQ(profile::load(file.fileName()), QString());
    SilentPage page;
    const JSContextEnv context = core.openPage(&page, {});
    const QVariantMap access { { QStringLiteral("path"), file.fileName() } };
    bool asked = false;
    meanwhile([&](QFileDialog& dialog) {
        asked = true;
        EXPECT_EQ(call(u"startAccess", access, &context), QVariant(false)) << "the user was asked meanwhile";
        dialog.reject();
    });
    call(u"getOpenFileName", inTemporary(), &context);
    EXPECT_TRUE(asked);
    EXPECT_EQ(call(u"startAccess", access, &context), QVariant(true)) << "the user was not asked afterwards";
    core.closePage(context);
}

TEST_F(PageDialogs, AreOneAtATimeForAPage)
{
    SilentPage page;
    const JSContextEnv context = core.openPage(&page, {});
    bool another = false;
    meanwhile([&](QFileDialog& dialog) {
        EXPECT_EQ(call(u"getOpenFileName", inTemporary(), &context), QVariant(QString()));
        EXPECT_EQ(QApplication::activeModalWidget(), &dialog) << "a second dialog is open";
        meanwhile([&](QFileDialog& second) {
            another = &second != &dialog;
            second.reject();
        });
        call(u"getOpenFileName", inTemporary()); // of another page
        dialog.reject();
    });
    call(u"getOpenFileName", inTemporary(), &context);
    EXPECT_TRUE(another) << "another page got no dialog";
    bool again = false;
    meanwhile([&](QFileDialog& dialog) {
        again = true;
        dialog.reject();
    });
    call(u"getOpenFileName", inTemporary(), &context);
    EXPECT_TRUE(again) << "the page got no dialog any more";
    core.closePage(context);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
