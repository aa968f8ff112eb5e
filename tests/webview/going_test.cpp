// Windows, views and pages that go before a call, inside it, and inside a listener.
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/web/webshell.h"
#include "host/suite/web/webwidget.h"
#include "tests/support/library.h"
#include "tests/support/rows.h"

#include <QApplication>
#include <QPointer>
#include <malloc.h>

namespace {

/// A window of a suite that emits its signals at once, from within what Qt does.
class HastyShell final : public QWidget {
    Q_OBJECT

public:
    ~HastyShell() override { }

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

/// A page in a view of a suite.
class Going : public support::LibraryTest {
protected:
    Going()
        : shell(new HastyShell)
        , widget(new HastyWidget(QStringLiteral("going"), shell))
    {
        vexlite::BrowserFacts facts;
        facts.browserId = QStringLiteral("going");
        own = std::make_unique<support::Page>(core, facts);
    }
    ~Going() override
    {
        own.reset();
        delete shell;
    }

    enum Victim { ShellItself, WidgetItself, PageItself };
    void destroy(Victim victim)
    {
        if (victim == ShellItself)
            delete shell;
        else if (victim == WidgetItself)
            delete widget;
        else
            own->close();
    }
    /// Of the page's own view.
    std::string call(const QString& member, const QByteArray& arguments = {})
    {
        return own->call("Webview", member.toLatin1(), arguments);
    }
    void listen(const QString& event, std::function<void()> action)
    {
        const auto body = [action = std::move(action)](const JSApiArguments&) {
            action();
            return KR_OK;
        };
        const auto listener = support::function(own->context, 1, body);
        own->call(own->object("Webview"), "add" + event.toLatin1() + "Listener", { listener });
    }

    QPointer<HastyShell> shell;
    QPointer<HastyWidget> widget;
    std::unique_ptr<support::Page> own;
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
    const auto call = [&] { return this->call(QString::fromLatin1(member.name), member.arguments); };
    EXPECT_EQ(call().find("3 "), std::string::npos) << "both are there";
    QCoreApplication::sendPostedEvents(); // what is made or emitted later
    destroy(WidgetItself);
    EXPECT_EQ(call() == NoWidget, !member.actsOnShell);
    destroy(ShellItself);
    EXPECT_EQ(call(), member.actsOnShell ? NoShell : NoWidget);
}

const struct Signal {
    const char* name; ///< of the event
    void (*emitted)(HastyShell& shell, HastyWidget& widget);
} Signals[] = {
    { "Hide", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigHidden(); } },
    { "Show", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigShown(); } },
    { "Close", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigClosed(); } },
    { "WindowActivateState", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigWindowActiveChanged(true); } },
    { "Resize", [](HastyShell& shell, HastyWidget&) { Q_EMIT shell.sigResized({ 1, 1 }, { 2, 2 }); } },
    { "DragEnter", [](HastyShell&, HastyWidget& widget) { Q_EMIT widget.sigDragEnter({}); } },
    { "WebviewEvent", [](HastyShell&, HastyWidget& widget) { Q_EMIT widget.sigWebviewEvent(5); } },
    { "Destroy", [](HastyShell& shell, HastyWidget&) { delete &shell; } },
};

ROW_TEST(Going, InAListener, Signals)
{
    for (const Victim victim : { ShellItself, WidgetItself, PageItself }) {
        // The window that is being destroyed can not be destroyed again.
        const bool isGoing = GetParam().name == std::string("Destroy");
        Going next; // a scene of its own for each
    }
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
