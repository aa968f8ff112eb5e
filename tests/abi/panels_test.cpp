// The panel bridges with a panel of the test's own, pages that go and callbacks that fail.
#include "suite/kplugin.h"
#include "suite/kxloggerlite.h"
#include "tests/support/library.h"
#include "tests/support/suite.h"

#include <QThread>

namespace {

QObject* currentPanel = nullptr;
int managers = 0; // one, or none
QStringList records;

void note(const char* level, const std::wstring& module, const std::wstring& text)
{
    records << QLatin1String(level) + QString::fromStdWString(L": " + module + L": " + text);
}

} // namespace

// A program's own definitions come before the suite's.
KPluginManager* KPluginManager::getInstance()
{
    return managers ? reinterpret_cast<KPluginManager*>(&managers) : nullptr;
}
QObject* KPluginManager::getPluginInstanceObject(const QString&)
{
    return currentPanel;
}
void KxLoggerLite::writeWarning(const std::wstring& module, const std::wstring& text)
{
    note("warning", module, text);
}
void KxLoggerLite::writeError(const std::wstring& module, const std::wstring& text)
{
    note("error", module, text);
}

/// Both panels in one.
class TestPanel : public QObject {
    Q_OBJECT

public:
    void emitBoth(const QVariantMap& notification)
    {
        Q_EMIT sig_panelNotify(notification);
        Q_EMIT sig_notifyToPanel(notification);
    }
    Q_INVOKABLE void qaNotify(const QVariantMap&)
    {
        calledIn = QThread::currentThread();
        if (onCall)
            onCall();
    }

    std::atomic<QThread*> calledIn = nullptr;
    std::function<void()> onCall;

public Q_SLOTS:
    void handlePanelNotify(const QVariantMap& given) { emitBoth(given); }

Q_SIGNALS:
    void sig_panelNotify(const QVariantMap& notification);
    void sig_notifyToPanel(const QVariantMap& notification);
};

namespace {

class Panels : public support::LibraryTest {
protected:
    Panels()
    {
        support::application();
        managers = 1;
        currentPanel = &panel;
        records.clear();
    }
    ~Panels() override { currentPanel = nullptr; }

    /// Registers a callback that notes `name` and the notification, and returns `status`.
    std::string listen(support::Page& by, const char* object, const std::string& name, KResult status = KR_OK)
    {
        const char* member =
            std::string_view(object) == "KContract" ? "registerCallback" : "registerQACallback";
        return by.call(by.object(object), member,
            { support::function(by.context, 1, [this, name, status](const JSApiArguments& given) {
                notes << QString::fromStdString(name + ' ' + support::json(given[0]));
                return status;
            }) });
    }
    std::string emitted(const char* notification, TestPanel* by = nullptr)
    {
        (by ? by : &panel)->emitBoth(support::parse(notification).first().toMap());
        return heard();
    }
    void nameView(support::Page& of, const char* id)
    {
        vexlite::BrowserFacts facts;
        facts.browserId = QString::fromLatin1(id);
        core.updateBrowser(of.context, facts);
    }

    TestPanel panel;
    support::Page other { core };
};

TEST_F(Panels, ReachTheViewThatIsMeantWhileItsPageIsThere)
{
    nameView(page, "a");
    nameView(other, "b");
    for (const char* object : { "AiDocsChat", "KContract" }) {
        EXPECT_EQ(listen(page, object, "page"), "");
        EXPECT_EQ(listen(other, object, "other"), "");
    }
    const struct {
        const char* notification;
        const char* heard;
    } rows[] = {
        { R"({"viewId":"b"})", R"(page {"viewId":"b"}; other {"viewId":"b"}; other {"viewId":"b"})" },
        { R"({"viewId":"a"})", R"(page {"viewId":"a"}; other {"viewId":"a"}; page {"viewId":"a"})" },
        { "{}", "page {}; other {}" },
        { "{}", "page {}; other {}" },
    };
    for (const auto& row : rows)
        EXPECT_EQ(emitted(row.notification), row.heard);
    EXPECT_EQ(records.size(), 2) << "once for each of the pages: " << records.join(u'\n').toStdString();
    const vexlite::BoundObject kept = page.object("KContract");
    page.close();
    EXPECT_EQ(emitted(R"({"viewId":"a"})"), R"(other {"viewId":"a"})")
        << "the object is still there, its page is not";
}

TEST_F(Panels, AreNotHeldUpByCallbacksThatFail)
{
    listen(page, "AiDocsChat", "fails", KR_REJECTED);
    listen(other, "AiDocsChat", "gone", KR_NOT_AVAILABLE);
    EXPECT_EQ(emitted("{}"), "fails {}; gone {}");
    EXPECT_EQ(emitted("{}"), "fails {}") << "the other's page has gone";
    EXPECT_EQ(records.join(u'\n').toStdString(),
        "error: PanelBridge: a page's callback for notifications of knovaaidocschatpanel has failed\n"
        "error: PanelBridge: a page's callback for notifications of knovaaidocschatpanel has failed");
}

TEST_F(Panels, MayBeReplacedAndComeBack)
{
    listen(page, "KContract", "page");
    nameView(page, "a");
    const char* notification = R"({"viewId":"a"})";
    TestPanel second;
    currentPanel = &second;
    EXPECT_EQ(emitted(notification, &second), "") << "nobody has looked";
    EXPECT_EQ(page.call("KContract", "panelNotify", notification), "");
    EXPECT_EQ(heard(), R"(page {"viewId":"a"})") << "connected before the panel's method is called";
    EXPECT_EQ(emitted(notification), "") << "the old one";
    currentPanel = &panel;
    listen(page, "KContract", "again");
    EXPECT_EQ(emitted(notification, &second) + emitted(notification), R"(again {"viewId":"a"})");
    managers = 0;
    EXPECT_EQ(page.call("KContract", "panelNotify", "{}"), "3 Panel not Found");
}

TEST_F(Panels, AreCalledWhereTheyAre)
{
    panel.onCall = [this] { other.close(); };
    EXPECT_EQ(other.call("AiDocsChat", "qaNotify", "{}"), "") << "the page goes within the call";
    EXPECT_EQ(panel.calledIn, QThread::currentThread());
    panel.onCall = {};
    QThread thread;
    thread.start();
    panel.moveToThread(&thread);
    EXPECT_EQ(page.call("AiDocsChat", "qaNotify", "{}"), "");
    // Runs after the call.
    QMetaObject::invokeMethod(
        &panel, [this] { panel.moveToThread(qApp->thread()); }, Qt::BlockingQueuedConnection);
    EXPECT_EQ(panel.calledIn, &thread);
    thread.quit();
    thread.wait();
}

} // namespace

#include "panels_test.moc"
