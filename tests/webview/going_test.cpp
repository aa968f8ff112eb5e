// Windows, views and pages that go before a call, inside it, and inside a listener.
#include "suite/kjsapiwebwidget.h"
#include "tests/support/library.h"
#include "tests/support/rows.h"

#include <QApplication>
#include <QPointer>
#include <malloc.h>

namespace {

/// A window of a suite that emits its signals at once, from within what Qt does.
class HastyShell final : public QWidget {
    Q_OBJECT

Q_SIGNALS:
    void sigHidden();
    void sigShown();
    void sigClosed();
    void sigWindowActiveChanged(bool active);
    void sigResized(const QSize& size, const QSize& oldSize);
};

/// A web widget that pages can have destroyed by a general method.
class HastyWidget final : public KJsApiWebWidget {
    Q_OBJECT

public:
    using KJsApiWebWidget::KJsApiWebWidget;

    Q_INVOKABLE QVariant vanish(const QVariant& value)
    {
        const QVariant kept = value;
        delete this;
        return kept;
    }
    // Not for pages.
    Q_INVOKABLE QVariant other(int) { return {}; }
    Q_INVOKABLE void nothing(const QVariant&) { }
};

enum class Victim { Shell, Widget, Page };

/// A page in a view of a suite.
struct Scene {
    explicit Scene(vexlite::Core& core)
        : shell(new HastyShell)
        , widget(new HastyWidget(QStringLiteral("going"), shell))
        , page(core, [] {
            vexlite::BrowserFacts facts;
            facts.browserId = QStringLiteral("going");
            return facts;
        }())
    {
    }
    ~Scene()
    {
        page.close();
        delete shell;
    }

    void destroy(Victim victim)
    {
        if (victim == Victim::Page)
            page.close();
        else if (victim == Victim::Widget)
            delete widget;
        else
            delete shell;
    }
    /// Of the page's own view.
    std::string call(const char* member, const QByteArray& arguments = {})
    {
        return page.call("Webview", member, arguments);
    }
    void listen(const char* event, std::function<void()> action)
    {
        const auto body = [action = std::move(action)](const JSApiArguments&) {
            action();
            return KR_OK;
        };
        const QByteArray member = QByteArray("add") + event + "Listener";
        page.call(page.object("Webview"), member, { support::function(page.context, ++m_listeners, body) });
    }

    QPointer<HastyShell> shell;
    QPointer<HastyWidget> widget;
    support::Page page;

private:
    std::uintptr_t m_listeners = 0;
};

class Going : public testing::Test {
protected:
    vexlite::Core& core = support::libraryCore();
};

const char NoShell[] = "3 empty webshellwidget";
const char NoWidget[] = "3 empty webwidget";

// Every member with arguments that are right, and what it acts on.
const struct Member {
    const char* name;
    const char* arguments;
    bool actsOnShell;
} Members[] = {
    { "destroy", "", true },
    { "show", "", false },
    { "hide", "", true },
    { "setMode", "true", true },
    { "setResizeable", "false", false },
    { "setWindowTitle", "5", true },
    { "setWindowBackgroundColor", R"({"r": 1, "g": 2, "b": 3})", false },
    { "setEnableStayOnTop", "true", true },
    { "getSize", "", false },
    { "getScreenNumber", "", true },
    { "isMaximize", "", true },
    { "isMinimize", "", true },
    { "isFullScreen", "", true },
    { "setWindowFlags", "[1, 2]", true },
    { "setWindowFlag", R"({"flag": 2048, "on": true})", true },
    { "setAttribute", R"({"attribute": 120, "on": true})", true },
    { "setRoundFillColor", R"({"fillColor": "red"})", false },
    { "setDisableScrollBar", "true", false },
    { "setDisableXScrollBar", "true", false },
    { "setDisableYScrollBar", "true", false },
    { "getGeometry", "", false },
    { "setGeometry", R"({"x": 1, "y": 2})", true },
    { "setSize", R"({"w": 30, "h": 20})", true },
    { "setDragArea", R"({"x": 0, "y": 0, "w": 9, "h": 9})", false },
    { "clearDragArea", "", false },
    { "setBlackDragArea", R"({"x": 0, "y": 0, "w": 9, "h": 9})", false },
    { "clearBlackDragArea", "", false },
    { "setMaximize", "", true },
    { "setMinimize", "", true },
    { "setRestore", "", true },
    { "setFullScreen", "", true },
    { "setMinimumSize", R"({"minw": 1, "minh": 1})", true },
    { "setMaximumSize", R"({"maxw": 900, "maxh": 900})", true },
    { "setMinimumWidth", "1.5", true },
    { "setMinimumHeight", "1", true },
    { "setMaximumWidth", "900", true },
    { "setMaximumHeight", "900", true },
    { "getID", "", false },
    { "pageReady", "", false },
    { "setDragEnterEnable", "true", false },
    { "invokeGeneralMethod", R"({"funcName": "postWebviewEvent"})", false },
    { "invokeGeneralMethodAsync", R"({"funcName": "postWebviewEvent"})", false },
};

ROW_TEST(Going, BeforeACall, Members)
{
    const Member& member = GetParam();
    Scene scene(core);
    EXPECT_EQ(scene.call(member.name, member.arguments).find("3 empty"), std::string::npos);
    QCoreApplication::sendPostedEvents(); // what is made or emitted later
    delete scene.widget;
    EXPECT_EQ(scene.call(member.name, member.arguments) == NoWidget, !member.actsOnShell);
    delete scene.shell;
    EXPECT_EQ(scene.call(member.name, member.arguments), member.actsOnShell ? NoShell : NoWidget);
}

const struct Signal {
    const char* name; ///< of the event
    void (*emitted)(HastyShell& shell, HastyWidget& widget);
} Signals[] = {
    { "Hide", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigHidden(); } },
    { "Show", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigShown(); } },
    { "Close", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigClosed(); } },
    { "WindowActivateState",
        [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigWindowActiveChanged(true); } },
    { "Resize",
        [](HastyShell& shell, HastyWidget&) {
            Q_EMIT shell.sigResized({ 1, 1 }, { 2, 2 });
        } },
    { "DragEnter", [](HastyShell&, HastyWidget& widget) { Q_EMIT widget.sigDragEnter({}); } },
    { "WebviewEvent", [](HastyShell&, HastyWidget& widget) { Q_EMIT widget.sigWebviewEvent(5); } },
    { "Destroy", [](HastyShell& shell, HastyWidget&) { delete &shell; } },
};

ROW_TEST(Going, InAListener, Signals)
{
    const bool isDestroyed = GetParam().name == std::string("Destroy");
    for (const Victim victim : { Victim::Shell, Victim::Widget, Victim::Page }) {
        Scene scene(core);
        int calls = 0;
        scene.listen(GetParam().name, [&] {
            ++calls;
            // A window is destroyed once; with it goes its view.
            if (victim != Victim::Shell || !isDestroyed)
                scene.destroy(victim);
        });
        scene.listen(GetParam().name, [&] {
            ++calls;
            EXPECT_EQ(scene.call("hide"), scene.shell && !isDestroyed ? "" : NoShell);
            EXPECT_EQ(scene.call("getID"), scene.widget ? "\"going\"" : NoWidget);
        });
        GetParam().emitted(*scene.shell, *scene.widget);
        EXPECT_EQ(calls, victim == Victim::Page ? 1 : 2);
    }
}

TEST_F(Going, WithinTheMethodThatAPageCalls)
{
    const QByteArray vanish = R"({"funcName": "vanish", "funcParam": [1, "x"]})";
    for (const char* name : { "other", "nothing", "close", "deleteLater", "vanish(QVariant)", "vanish" }) {
        Scene scene(core);
        const QByteArray options = QByteArray(R"({"funcName": ")") + name + R"("})";
        EXPECT_EQ(
            scene.call("invokeGeneralMethod", options), name == std::string("vanish") ? "true" : "false");
        EXPECT_EQ(!scene.widget, name == std::string("vanish")) << name;
    }
    Scene later(core);
    for (int i = 0; i < 2; ++i)
        later.call("invokeGeneralMethodAsync", vanish);
    EXPECT_TRUE(later.widget);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(later.page.settled, (std::vector<std::string> { R"([1,"x"])", "rejected: 3 empty webwidget" }));
}

TEST_F(Going, OfAnObjectThatItsListenerLetsGo)
{
    Scene scene(core);
    support::Page other(core);
    other.call("WebviewMgr", "getWebview", "\"going\"");
    auto kept = std::make_unique<vexlite::BoundObject>(other.handedOut());
    other.result = {};
    int calls = 0;
    const auto body = [&](const JSApiArguments&) {
        ++calls;
        kept.reset();
        return KR_OK;
    };
    other.call(*kept, "addShowListener", { support::function(other.context, 1, body) });
    Q_EMIT scene.shell->sigShown();
    Q_EMIT scene.shell->sigShown();
    EXPECT_EQ(calls, 1) << "nobody has the object any more";
}

} // namespace

int main(int argc, char** argv)
{
    // What the library still reads of a widget that has gone is no longer what it was.
    mallopt(M_PERTURB, 0xa5);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "going_test.moc"
