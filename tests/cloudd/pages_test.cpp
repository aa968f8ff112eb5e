// A page that goes while the cloud process works for it, beside one that stays: real engine, real process.
#include "framework/entry.h"
#include "host/engine/page.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudservice.h"
#include "suite/kcoreapplication.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <set>

namespace {

/// Passes on what the library sends, and knows who waits.
class Watching final : public IKCloudIpcService {
public:
    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override
    {
        receivers.emplace_back(receiver);
        return suite::CloudService::instance().invoke(procedure, argument, receiver, replySlot);
    }
    /// How many of them are still there.
    std::size_t alive() const
    {
        std::set<const QObject*> found(receivers.begin(), receivers.end());
        found.erase(nullptr);
        return found.size();
    }

    std::vector<QPointer<QObject>> receivers;
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
    explicit TestPage(engine::ScriptEngine& scriptEngine, const QString& source)
    {
        engine::PageHost host;
        host.console = [this](const QString& line, bool) {
            lines << line;
            if (line == QLatin1String("waiting")) {
                // At once: the replies are on their way.
                underWay = watching.alive();
                page->close();
            }
        };
        host.uncaughtError = [](const engine::Outcome& error) { ADD_FAILURE() << qPrintable(error.text); };
        page = scriptEngine.openPage({}, std::move(host));
        page->run(source, QStringLiteral("page.js"), [](const engine::Outcome&) {});
    }

    QStringList lines;
    std::size_t underWay = 0; ///< when the page was closed
    std::unique_ptr<engine::Page> page;
};

} // namespace

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return &watching;
}

namespace {

TEST(Pages, OneThatGoesLeavesNothingAndTheOtherHearsOnlyItsOwn)
{
    const QTemporaryDir directory;
    ASSERT_EQ(profile::setDataDirectory(directory.path()), QString());
    const auto writeFile = [&](const char* name, const QByteArray& bytes) {
        QFile file(directory.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    };
    const QString file = writeFile("file", QByteArray(1 << 16, 'x'));
    // Slow enough for the page to go in the midst of its uploads.
    const char slowly[] = R"({ "cloud": { "uploadBytesPerSecond": 786432 } })";
    ASSERT_EQ(profile::load(writeFile("profile.json", slowly)), QString());
    vexlite::Core& core = vexlite::Core::start({});
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);
    core.setFactories(factories);
    {
        const auto scriptEngine = engine::makeJscEngine();
        const QString upload =
            QStringLiteral("const { CloudDoc } = NovaExtension;"
                           "const upload = () => CloudDoc.createUploadFileTask({ filePath: '%1', "
                           "cloudDir: 'up', autoRename: true });")
                .arg(file);
        TestPage going(*scriptEngine, upload + QStringLiteral(R"(
            for (let i = 0; i < 100; ++i) {
                const task = upload();
                for (const event of ["started", "progressChanged", "finished"])
                    task.addEventListener(`cloud.upload.${event}`, () => console.log(event));
                task.start();
            }
            await CloudDoc.getRoamingMode();
            await CloudDoc.getRoamingMode();
            for (let i = 0; i < 1000; ++i)
                CloudDoc.getPersonalPrivateGroup().finally(() => console.log("settled"));
            console.log("waiting");
        )"));
        TestPage staying(*scriptEngine, upload + QStringLiteral(R"(
            const task = upload();
            task.addEventListener("cloud.upload.started", ({ taskId }) => console.log("started", taskId !== ""));
            task.addEventListener("cloud.upload.finished", ({ status }) => console.log("finished", status));
            task.start();
            console.log(await CloudDoc.getRoamingMode());
        )"));
        ASSERT_TRUE(waitFor([&] { return going.lines.contains(QStringLiteral("waiting")); }));
        EXPECT_EQ(going.lines.count(QStringLiteral("started")), 100);
        EXPECT_GE(going.underWay, 1100U) << "too little is under way";
        const QStringList before = going.lines;
        // Its uploads go on, each with its object, until they have ended.
        EXPECT_TRUE(waitFor([] { return watching.alive() <= 101; }))
            << watching.alive() << " objects are left";
        EXPECT_GT(watching.alive(), 1U);
        EXPECT_TRUE(waitFor([&] { return staying.lines.contains(QStringLiteral("finished 1")); }));
        EXPECT_EQ(staying.lines.join(QLatin1Char('|')).toStdString(), "started true|auto|finished 1");
        EXPECT_EQ(going.lines, before) << "a page that is closed was called";
        staying.page.reset();
        EXPECT_TRUE(waitFor([] { return watching.alive() == 0; })) << watching.alive() << " objects are left";
        scriptEngine->collectGarbage();
    }
    const vexlite::LiveCounts counts = core.liveCounts();
    EXPECT_EQ(counts.pages + counts.listeners + counts.promises + counts.functions, 0);
    suite::CloudService::shutDown();
    vexlite::Core::stop();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    KCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
