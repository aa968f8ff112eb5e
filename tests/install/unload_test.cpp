// A suite that goes on without the library, whatever the library was at.
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudsvrproxy.h"
#include "host/suite/plugins/pluginmanager.h"
#include "suite/kskin.h"
#include "tests/support/accounts.h"
#include "tests/support/cloudservice.h"
#include "tests/support/page.h"

#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTimer>
#include <algorithm>
#include <dlfcn.h>

namespace {

using support::Page;

/// A suite into whose core a copy of the library is loaded: one that stays loaded is no other test's.
class Unload : public testing::Test {
protected:
    Unload()
    {
        EXPECT_TRUE(QFile::copy(QStringLiteral(LIBRARY), QString::fromUtf8(m_path)));
        suite::PluginManager::start();
        load();
    }
    ~Unload() override
    {
        page.reset();
        support::cloudProxy = nullptr;
        suite::PluginManager::shutDown();
        vexlite::Core::stop();
    }

    void load()
    {
        m_library = dlopen(m_path, RTLD_NOW | RTLD_LOCAL);
        ASSERT_TRUE(m_library) << dlerror();
        void* entry = dlsym(m_library, "GetNovaExtensionJsApiObj");
        ASSERT_TRUE(entry);
        ExtensionFactoryMap factories;
        reinterpret_cast<void (*)(ExtensionFactoryMap*)>(entry)(&factories);
        core.setFactories(factories);
        page = std::make_unique<Page>(core);
    }
    /// Unloads the library, without any page.
    void unload()
    {
        page->close();
        dlclose(m_library);
    }
    bool isLoaded() const
    {
        void* found = dlopen(m_path, RTLD_NOW | RTLD_NOLOAD);
        return found && dlclose(found) == 0;
    }
    static void goOn(int ms)
    {
        QElapsedTimer time;
        time.start();
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        } while (time.elapsed() < ms);
    }

    /// Has the page listen to events of all kinds.
    void listenToAll()
    {
        const auto ignore = [](const std::string&) {};
        page->listen(page->object("CloudDoc"), "clouddoc.loginstatus.changed", ignore);
        page->listen(page->object("Account"), "event.account.login", ignore);
        page->listen(page->object("Skin"), "skinchangeevent", ignore);
        page->call("PluginManager", "getPlugin", "\"sample\"");
        page->call(page->handedOut(), "load", support::values(R"({"option": 2})"));
    }

    /// The plugin that is being loaded.
    static KPlugin& plugin() { return *KPluginManager::getInstance()->getPlugin(QStringLiteral("sample")); }

private:
    const QTemporaryDir m_directory;
    const QByteArray m_path = QFile::encodeName(m_directory.filePath(QStringLiteral("library.so")));
    void* m_library = nullptr;

protected:
    support::FakeCloudService service;
    std::unique_ptr<support::FakeAccounts> accounts = std::make_unique<support::FakeAccounts>("u");
    suite::CloudSvrProxy proxy;
    vexlite::Core& core = vexlite::Core::start({});
    std::unique_ptr<Page> page;
};

TEST_F(Unload, LeavesNothing)
{
    for (int round = 0; round < 2; ++round) {
        for (const QString& name : core.objectNames()) {
            const vexlite::BoundObject& bound = page->object(name.toLatin1());
            // Dialogs wait for the user, and keep the library loaded.
            static const QRegularExpression dialogs(QStringLiteral("Filepath$|Dlg$|Widget$|Page$|Box$"));
            for (std::int32_t i = 0; name != QStringLiteral("FileSystem") && i < bound.members->Count();
                 ++i) {
                const QString member = QString::fromUtf16(bound.members->Name(i));
                if (bound.members->Kind(i) == 0 && !member.contains(dialogs))
                    page->call(bound, member.toLatin1());
            }
        }
        EXPECT_EQ(core.creatableClasses(), QStringList()) << "no page was given an object of one";
        page->call("SettingsManager", "settings", R"({"format": 0})");
        EXPECT_EQ(core.creatableClasses().size(), 1);
        unload();
        EXPECT_FALSE(isLoaded());
        EXPECT_EQ(core.creatableClasses(), QStringList());
        const vexlite::LiveCounts left = core.liveCounts();
        EXPECT_EQ(left.pages + left.listeners + left.promises, 0);
        load();
    }
    unload();
}

TEST_F(Unload, LeavesNothingOfWhatIsUnderWay)
{
    QTemporaryFile endless;
    ASSERT_TRUE(endless.open() && endless.resize(qint64 { 1 } << 40));
    page->call("FileSystem", "getFileMd5", '"' + endless.fileName().toUtf8() + '"');
    QCoreApplication::processEvents();
    support::cloudProxy = &proxy;
    listenToAll();
    // A request to which the reply waits in the queue, and one without; an upload that is polled, and one let go.
    for (const bool isReplied : { true, false }) {
        page->call("CloudDoc", "getPersonalPrivateGroup");
        EXPECT_TRUE(!isReplied || service.take().replyState(true, 0, {}, Qt::QueuedConnection));
        page->call("CloudDoc", "createUploadFileTask", R"({"filePath": "/none"})");
        const vexlite::BoundObject task = page->handedOut();
        if (isReplied) {
            page->call(task, "start");
            service.requests.back().replyState(true, 0, { { "taskId", "t" } });
            service.requests.pop_back();
        }
    }
    unload();
    EXPECT_FALSE(isLoaded());
    EXPECT_FALSE(service.take().replyState(true, 0, {})) << "nobody is left to receive it";
    proxy.setLogin(true);
    accounts->become("other");
    accounts.reset();
    goOn(1200); // longer than a poll or a search for a service takes
}

TEST_F(Unload, MayHappenInASignalThatTheLibraryReceives)
{
    support::cloudProxy = &proxy;
    KSkin skin;
    skin.setObjectName(QStringLiteral("novaoffice"));
    skin.setParent(&support::application());
    const struct {
        const char* signal;
        QObject* sender;
        std::function<void()> emit;
    } rows[] = {
        { SIGNAL(loginStatusChanged(bool)), &proxy, [&] { proxy.setLogin(true); } },
        { SIGNAL(loginInfoChanged()), accounts.get(), [&] { accounts->become("other"); } },
        { SIGNAL(sigProgress(qint64, qint64)), &plugin(), [] { Q_EMIT plugin().sigProgress(2, 1); } },
        { SIGNAL(sigFailed()), &plugin(), [] { Q_EMIT plugin().sigFailed(); } },
        { SIGNAL(sigSkinChanged()), &skin, [&] { Q_EMIT skin.sigSkinChanged(); } },
        { SIGNAL(destroyed()), accounts.get(), [&] { accounts.reset(); } },
    };
    for (const auto& row : rows) {
        listenToAll();
        QTimer suite; // passes the signal on
        QObject::connect(&suite, &QTimer::timeout, [&] { unload(); });
        EXPECT_TRUE(QObject::connect(row.sender, row.signal, &suite, SIGNAL(timeout())));
        row.emit();
        EXPECT_FALSE(isLoaded()) << row.signal;
        load();
    }
    unload();
}

TEST_F(Unload, LeavesRoutinesThatTheSuiteStillCalls)
{
    const int before = support::FakeFunction::alive;
    std::string reports;
    const auto note = [&](const JSApiArguments& report) {
        reports += support::json(report[0]);
        return KR_OK;
    };
    for (const char* member : { "flushWrite", "flushRemove" }) {
        std::vector<KJSVariant> given = support::values(R"({"key": "k", "value": 1})");
        given.push_back(support::function(page->context, 1, note));
        page->call(page->object("ConfigCenter"), member, given);
    }
    unload();
    goOn(10);
    EXPECT_EQ(reports, R"({"key":"k","ok":true,"value":1}{"key":"k","ok":true,"value":null})");
    EXPECT_EQ(support::FakeFunction::alive, before);
}

TEST_F(Unload, MayHappenWhileADialogIsOpen)
{
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        unload();
        dialog->reject();
    });
    EXPECT_EQ(page->call("FileSystem", "getOpenFileName", R"({"dir": "/"})"), "\"\"");
}

/// Whether this process has a file open.
bool isOpen(const QString& file)
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QStringList names = descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    return std::any_of(names.begin(), names.end(),
        [&](const QString& name) { return QFile::symLinkTarget(descriptors.filePath(name)) == file; });
}

/// A server that says nothing, and a page that may reach it and has a request and a download under way there.
class UnloadInRequests : public Unload {
protected:
    UnloadInRequests()
    {
        EXPECT_TRUE(m_profile.open() && m_server.listen(QHostAddress::LocalHost));
        m_profile.write(R"({"policy": [{"origin": "nova://*", "allow": ["*"],
            "permissions": ["reachNetwork", "reachPrivateNetwork"]}]})");
        m_profile.flush();
        EXPECT_EQ(profile::load(m_profile.fileName()), QString());
        page->pageOrigin = QStringLiteral("nova://test");
        const QString url = QStringLiteral("\"url\": \"http://127.0.0.1:%1/\"").arg(m_server.serverPort());
        page->call("Network", "fetch", QStringLiteral("{%1}").arg(url).toUtf8());
        std::vector<KJSVariant> given =
            support::values(QStringLiteral(R"({%1, "resume": true, "path": "%2"})")
                                .arg(url, m_directory.filePath(QStringLiteral("f")))
                                .toUtf8());
        given.push_back(support::function(page->context, 1, [](const JSApiArguments&) { return KR_OK; }));
        page->call(page->object("Network"), "download", given);
        for (QElapsedTimer patience; m_connections.size() < 2;) {
            patience.isValid() ? void() : patience.start();
            goOn(0);
            if (QTcpSocket* next = m_server.nextPendingConnection())
                m_connections.push_back(next);
            if (patience.elapsed() > 60'000) {
                ADD_FAILURE() << "no connection";
                break;
            }
        }
    }
    ~UnloadInRequests() override
    {
        EXPECT_TRUE(
            m_profile.resize(0) && m_profile.seek(0) && m_profile.write("{}") == 2 && m_profile.flush());
        profile::load(m_profile.fileName());
    }

    bool areClosed() const
    {
        return std::all_of(m_connections.begin(), m_connections.end(),
            [](const QTcpSocket* one) { return one->state() == QAbstractSocket::UnconnectedState; });
    }
    QStringList files() const { return QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden); }

private:
    QTemporaryFile m_profile;
    QTemporaryDir m_directory;
    QTcpServer m_server;
    std::vector<QTcpSocket*> m_connections;
};

TEST_F(UnloadInRequests, EndsThem)
{
    EXPECT_FALSE(areClosed());
    unload();
    EXPECT_FALSE(isLoaded());
    goOn(1200); // longer than the watch over pages takes
    EXPECT_TRUE(areClosed());
    EXPECT_EQ(files(), QStringList());
}

TEST_F(UnloadInRequests, NeedNotWaitForThoseOfAPageThatHasGone)
{
    page->close();
    QElapsedTimer patience;
    for (patience.start(); !areClosed() && patience.elapsed() < 60'000;)
        goOn(0);
    EXPECT_TRUE(areClosed());
    EXPECT_EQ(files(), QStringList());
    unload();
}

TEST_F(Unload, NeedNotWaitForTheFileOfAPageThatHasGone)
{
    QTemporaryFile endless;
    ASSERT_TRUE(endless.open() && endless.resize(qint64 { 1 } << 40));
    const QString path = endless.fileName();
    endless.close();
    page->call("FileSystem", "getFileMd5", '"' + path.toUtf8() + '"');
    while (!isOpen(path))
        QCoreApplication::processEvents();
    page->close();
    QElapsedTimer patience;
    for (patience.start(); isOpen(path) && patience.elapsed() < 60'000;)
        goOn(0);
    EXPECT_FALSE(isOpen(path)) << "the file is still being read";
    unload();
}

} // namespace
