// A page that goes while the cloud process works for it, beside one that stays: real engine, real process.
#include "framework/entry.h"
#include "host/engine/page.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudservice.h"
#include "suite/kcoreapplication.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

/// Passes on what the library sends, and knows who waits.
class Watching final : public IKCloudIpcService {
public:
    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override
    {
        if (!receivers.contains(receiver)) {
            receivers.insert(receiver);
            QObject::connect(receiver, &QObject::destroyed, [this, receiver] { receivers.remove(receiver); });
        }
        return suite::CloudService::instance().invoke(procedure, argument, receiver, replySlot);
    }

    QSet<QObject*> receivers; ///< those that are still there
} watching;

template <typename Condition> bool waitFor(Condition holds)
{
    QElapsedTimer waited;
    for (waited.start(); !holds() && waited.elapsed() < 60'000;) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return holds();
}

struct TestPage {
    TestPage(engine::ScriptEngine& scriptEngine, const QString& source)
    {
        engine::PageHost host;
        host.console = [this](const QString& line, bool) {
            lines << line;
            if (line == QLatin1String("waiting")) {
                // At once: the replies are on their way.
                underWay = watching.receivers.size();
                page->close();
            }
        };
        host.uncaughtError = [](const engine::Outcome& error) { ADD_FAILURE() << qPrintable(error.text); };
        page = scriptEngine.openPage({}, std::move(host));
        page->run(source, QStringLiteral("page.js"), [](const engine::Outcome&) {});
    }

    QStringList lines;
    int underWay = 0; ///< when the page was closed
    std::unique_ptr<engine::Page> page;
};

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return path;
}

} // namespace

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return &watching;
}

TEST(Pages, OneThatGoesLeavesNothingAndTheOtherHearsOnlyItsOwn)
{
    const QTemporaryDir directory;
    ASSERT_EQ(profile::setDataDirectory(directory.filePath(QStringLiteral("data"))), QString());
    const QString file = writeFile(directory.filePath(QStringLiteral("file")), QByteArray(1 << 16, 'x'));
    // Slow enough for the page to go in the midst of its uploads.
    ASSERT_EQ(profile::load(writeFile(directory.filePath(QStringLiteral("profile.json")),
                  R"({ "cloud": { "uploadBytesPerSecond": 786432 } })")),
        QString());
    vexlite::Core& core = vexlite::Core::start({});
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);
    core.setFactories(factories);
    {
        const auto scriptEngine = engine::makeJscEngine();
        const QString upload = QStringLiteral(R"(
            const { CloudDoc } = NovaExtension;
            const upload = (...events) => {
                const task = CloudDoc.createUploadFileTask({ filePath: '%1', cloudDir: 'up', autoRename: true });
                for (const event of events)
                    task.addEventListener(`cloud.upload.${event}`, ({ status }) => console.log(event, status));
                task.start();
            };)")
                                   .arg(file);
        TestPage going(*scriptEngine, upload + QStringLiteral(R"(
            for (let i = 0; i < 100; ++i)
                upload("started", "progressChanged", "finished");
            await CloudDoc.getRoamingMode();
            await CloudDoc.getRoamingMode();
            for (let i = 0; i < 1000; ++i)
                CloudDoc.getPersonalPrivateGroup().finally(() => console.log("settled"));
            console.log("waiting");)"));
        TestPage staying(*scriptEngine, upload + QStringLiteral(R"(
            upload("started", "finished");
            console.log(await CloudDoc.getRoamingMode());)"));
        ASSERT_TRUE(waitFor([&] { return going.lines.contains(QStringLiteral("waiting")); }));
        EXPECT_GE(going.underWay, 1100) << "too little is under way";
        const QStringList before = going.lines;
        // Its uploads go on, each with its object, until they have ended.
        EXPECT_TRUE(waitFor([] { return watching.receivers.size() <= 101; }));
        EXPECT_GT(watching.receivers.size(), 1);
        EXPECT_TRUE(waitFor([&] { return staying.lines.contains(QStringLiteral("finished 1")); }));
        EXPECT_EQ(staying.lines.join(QLatin1Char('|')).toStdString(), "started undefined|auto|finished 1");
        EXPECT_EQ(going.lines, before) << "a page that is closed was called";
        staying.page.reset();
        EXPECT_TRUE(waitFor([] { return watching.receivers.isEmpty(); }));
        scriptEngine->collectGarbage();
    }
    const vexlite::LiveCounts counts = core.liveCounts();
    EXPECT_EQ(counts.pages + counts.listeners + counts.promises + counts.functions, 0);
    suite::CloudService::shutDown();
    vexlite::Core::stop();
}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    KCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
