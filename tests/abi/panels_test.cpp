// The contract panel, of the test's own, with two pages: script has one.
#include "suite/kplugin.h"
#include "suite/kxloggerlite.h"
#include "tests/support/library.h"
#include "tests/support/suite.h"

#include <QThread>

static QObject* currentPanel = nullptr;
static std::wstring records;

// A program's own definitions come before the suite's.
KPluginManager* KPluginManager::getInstance()
{
    return reinterpret_cast<KPluginManager*>(&currentPanel);
}
QObject* KPluginManager::getPluginInstanceObject(const QString&)
{
    return currentPanel;
}
void KxLoggerLite::writeWarning(const std::wstring&, const std::wstring&)
{
    records += L"warning ";
}
void KxLoggerLite::writeError(const std::wstring&, const std::wstring&)
{
    records += L"error ";
}

class TestPanel : public QObject {
    Q_OBJECT

public:
    std::atomic<QThread*> calledIn = nullptr;

public Q_SLOTS:
    void handlePanelNotify(const QVariantMap& given)
    {
        calledIn = QThread::currentThread();
        Q_EMIT sig_notifyToPanel(given);
    }

Q_SIGNALS:
    void sig_notifyToPanel(const QVariantMap& notification);
};

namespace {

using Panels = support::LibraryTest;

TEST_F(Panels, ReachTheViewThatIsMeantWhileItsPageIsThere)
{
    support::application();
    TestPanel first, second;
    currentPanel = &first;
    support::Page other { core };
    KResult status = KR_OK;
    for (auto& [by, view] : { std::pair(&page, "a"), std::pair(&other, "b") }) {
        vexlite::BrowserFacts facts;
        facts.browserId = QString::fromLatin1(view);
        core.updateBrowser(by->context, facts);
        const auto hear = [&, view = facts.browserId](
                              const JSApiArguments&) { return notes << view, status; };
        by->call(by->object("KContract"), "registerCallback", { support::function(by->context, 1, hear) });
    }
    const auto emitted = [&](TestPanel& by, const QVariant& view) {
        Q_EMIT by.sig_notifyToPanel({ { QStringLiteral("viewId"), view } });
        return heard();
    };
    const QVariant a = QStringLiteral("a"), b = QStringLiteral("b");
    EXPECT_EQ(emitted(first, a) + emitted(first, b), "ab");
    EXPECT_EQ(emitted(first, 1) + emitted(first, {}), "");
    EXPECT_EQ(records, L"warning warning ") << "one for each page";
    status = KR_REJECTED;
    EXPECT_EQ(emitted(first, a) + emitted(first, a), "aa") << "a callback that fails stays";
    EXPECT_EQ(records, L"warning warning error error ");

    currentPanel = &second; // the other one is still there
    EXPECT_EQ(emitted(second, a), "") << "nobody has looked";
    QThread thread;
    thread.start();
    second.moveToThread(&thread);
    EXPECT_EQ(page.call("KContract", "panelNotify", R"({"viewId": "a"})"), "");
    QMetaObject::invokeMethod(
        &second, [&] { second.moveToThread(qApp->thread()); }, Qt::BlockingQueuedConnection);
    thread.quit();
    thread.wait();
    EXPECT_EQ(second.calledIn, &thread);
    EXPECT_EQ(heard(), "a") << "what the panel emitted in its thread";
    EXPECT_EQ(emitted(first, a), "") << "the panel from before";

    status = KR_NOT_AVAILABLE; // as of a page that has gone
    EXPECT_EQ(emitted(second, a) + emitted(second, a), "a");
    const vexlite::BoundObject kept = other.object("KContract");
    other.close();
    EXPECT_EQ(emitted(first, b), "");
    currentPanel = nullptr;
}

} // namespace

#include "panels_test.moc"
