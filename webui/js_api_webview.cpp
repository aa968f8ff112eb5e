#include "webui/js_api_webview.h"

#include "framework/pagewatch.h"
#include "suite/kdrawhelper.h"
#include "suite/klitestyle.h"
#include "vexlite/webwidgets.h"
#include "webui/generalmethod.h"
#include "webui/viewmembers.h"
#include "webui/windowvalues.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QMetaMethod>

namespace jsapi {

namespace {

constexpr Failure NoScreen { ErrorCode::OperationFailed, "empty screen" };

QDesktopWidget* findDesktop()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) ? QApplication::desktop() : nullptr;
}

} // namespace

template <> struct Argument<QDesktopWidget> : ServiceArgument<QDesktopWidget, findDesktop, NoScreen> {
};

void KJsApiWebview::bindTo(KJsApiWebWidget& widget)
{
    m_widget = { Guarded(&widget) };
    m_shell = { Guarded(widget.window()) };
    m_isBound = true;
}

void KJsApiWebview::bindToPage(const JSContextEnv& page)
{
    const IVEXBrowser* browser = m_isBound ? nullptr : browserOf(page);
    if (KJsApiWebWidget* widget = browser ? vexlite::GetWebWidget(browser->BrowserId()) : nullptr)
        bindTo(*widget);
}

KJsApiViewEventHandle* KJsApiWebview::handle()
{
    if (!m_handle && hub())
        m_handle = std::make_unique<KJsApiViewEventHandle>(*this);
    return m_handle.get();
}

Answer<WebWidget> KJsApiWebview::findWidget(const JSContextEnv& page)
{
    bindToPage(page);
    if (!m_widget)
        return NoWebWidget;
    return m_widget;
}

Answer<Shell> KJsApiWebview::findShell(const JSContextEnv& page)
{
    bindToPage(page);
    if (!m_shell)
        return NoShell;
    return m_shell;
}

Answer<EventSource<WebWidget>> KJsApiWebview::findWidgetEvents(const JSContextEnv& page)
{
    if (!handle())
        return EmptyHandle;
    Answer<WebWidget> widget = findWidget(page);
    if (widget.isRefused())
        return widget.refusal();
    return EventSource<WebWidget> { widget.value(), m_handle.get() };
}

Answer<EventSource<Shell>> KJsApiWebview::findShellEvents(const JSContextEnv& page)
{
    if (!handle())
        return EmptyHandle;
    Answer<Shell> shell = findShell(page);
    if (shell.isRefused())
        return shell.refusal();
    return EventSource<Shell> { shell.value(), m_handle.get() };
}

namespace {

Answer<void> destroy(const Shell& shell)
{
    shell->setAttribute(Qt::WA_DeleteOnClose);
    shell->close();
    return {};
}

Answer<void> showView(const WebWidget& widget)
{
    widget->beforeShow();
    if (!widget)
        return NoWebWidget;
    widget->show();
    return {};
}

Answer<void> takeFocus(const WebWidget& widget, const Shell& shell)
{
    shell->activateWindow();
    if (!widget)
        return NoWebWidget;
    widget->takeFocus();
    return {};
}

Answer<void> setMode(const Shell& shell, bool modal)
{
    shell->setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    return {};
}

Answer<void> setWindowTitle(const Shell& shell, const ConvertedString& title)
{
    shell->setWindowTitle(title.string);
    return {};
}

struct BackgroundColor {
    std::int32_t r = 0;
    std::int32_t g = 0;
    std::int32_t b = 0;
    QString kdColorName;
    static constexpr auto fields()
    {
        using Self = BackgroundColor;
        return std::tuple(required("r", &Self::r, "red, 0 to 255", WrongParameters, WrongParameters),
            required("g", &Self::g, "green, 0 to 255", WrongParameters, WrongParameters),
            required("b", &Self::b, "blue, 0 to 255", WrongParameters, WrongParameters),
            optional("kdColorName", &Self::kdColorName,
                "a colour of the theme, in place of the three where the theme has it"));
    }
};

Answer<bool> setWindowBackgroundColor(const WebWidget& widget, const BackgroundColor& wanted)
{
    for (const std::int32_t part : { wanted.r, wanted.g, wanted.b }) {
        if (part < 0 || part > 255)
            return WrongParameters;
    }
    QColor color(wanted.r, wanted.g, wanted.b);
    if (!wanted.kdColorName.isEmpty()) {
        const QColor common =
            KDrawHelper::getColorFromTheme(heapString("CommonPalette"), wanted.kdColorName, {});
        color = common.isValid()
            ? common
            : KDrawHelper::getColorFromTheme(heapString("CommonThemePalette"), wanted.kdColorName, color);
    }
    return widget->setWindowBackgroundColor(0xff000000u | (color.rgb() & 0xffffffu));
}

struct RoundFill {
    QString fillColor;
    static constexpr auto fields()
    {
        return std::tuple(optional("fillColor", &RoundFill::fillColor,
            "a colour as `#rrggbb` or by its name in SVG; white in place of one that there is not"));
    }
};

Answer<bool> setRoundFillColor(const WebWidget& widget, const RoundFill& wanted)
{
    const bool isColor = QColor::isValidColor(wanted.fillColor);
    widget->setRoundFillColor(isColor ? QColor(wanted.fillColor) : QColor(Qt::white));
    return true;
}

/// Qt hides a window whose flags change.
void changeFlags(const Shell& shell, Qt::WindowFlags flags)
{
    const bool wasVisible = shell->isVisible();
    if (flags == shell->windowFlags())
        return;
    shell->setWindowFlags(flags);
    if (shell && wasVisible)
        shell->show();
}

Answer<void> setEnableStayOnTop(const Shell& shell, bool onTop)
{
    changeFlags(shell, shell->windowFlags().setFlag(Qt::WindowStaysOnTopHint, onTop));
    return {};
}

Answer<void> setWindowFlags(const Shell& shell, const std::vector<std::int32_t>& added)
{
    if (added.empty())
        return MissingParameters;
    Qt::WindowFlags flags = shell->windowFlags();
    for (const std::int32_t flag : added)
        flags |= Qt::WindowFlags(flag);
    if (!isWindowOfSuite(flags))
        return WrongParameters;
    changeFlags(shell, flags);
    return {};
}

struct FlagChange {
    std::int32_t flag = 0;
    bool on = false;
    static constexpr auto fields()
    {
        return std::tuple(required("flag", &FlagChange::flag, "a `Qt::WindowType`, as its number",
                              WrongParameters, WrongParameters),
            required("on", &FlagChange::on, "", WrongParameters, WrongParameters));
    }
};

Answer<void> setWindowFlag(const Shell& shell, const FlagChange& change)
{
    Qt::WindowFlags flags = shell->windowFlags();
    flags.setFlag(static_cast<Qt::WindowType>(change.flag), change.on);
    // Without this bit a window with a parent would become a part of that.
    if (!isWindowOfSuite(Qt::WindowFlags(change.flag)) || !(flags & Qt::Window))
        return WrongParameters;
    changeFlags(shell, flags);
    return {};
}

struct AttributeChange {
    std::int32_t attribute = 0;
    bool on = false;
    static constexpr auto fields()
    {
        return std::tuple(required("attribute", &AttributeChange::attribute,
                              "a `Qt::WidgetAttribute`, as its number; none in which Qt keeps its own state",
                              WrongParameters, WrongParameters),
            required("on", &AttributeChange::on, "", WrongParameters, WrongParameters));
    }
};

Answer<void> setAttribute(const Shell& shell, const AttributeChange& change)
{
    if (!isSettableAttribute(change.attribute))
        return WrongParameters;
    shell->setAttribute(static_cast<Qt::WidgetAttribute>(change.attribute), change.on);
    return {};
}

Answer<void> setGeometry(const Shell& shell, const WindowPlace& place)
{
    shell->setGeometry(QRect(place.scaled(), shell->size()));
    return {};
}

Answer<ViewSize> getSize(const WebWidget& widget)
{
    return toCssPixels(widget->size());
}

struct ViewPlace {
    std::int32_t x;
    std::int32_t y;
    static constexpr auto fields()
    {
        return std::tuple(property("x", &ViewPlace::x, "from the left of the screen to the view"),
            property("y", &ViewPlace::y, "from the top of the screen to the view"));
    }
};

Answer<ViewPlace> getGeometry(const WebWidget& widget)
{
    const QPoint place = widget->mapToGlobal({ 0, 0 });
    return ViewPlace { toCssPixels(place.x()), toCssPixels(place.y()) };
}

Answer<std::int32_t> getScreenNumber(const Shell& shell, QDesktopWidget& desktop)
{
    return desktop.screenNumber(shell.get());
}

Answer<bool> invokeGeneralMethod(const WebWidget& widget, const GeneralCall& call)
{
    QVariant returned;
    return findGeneralMethod(*widget, call.funcName)
        .invoke(widget.get(), Qt::DirectConnection, Q_RETURN_ARG(QVariant, returned),
            Q_ARG(QVariant, call.funcParam));
}

Answer<Promise<QVariant>> invokeGeneralMethodAsync(
    const WebWidget& widget, const JSContextEnv& page, const GeneralCall& call)
{
    return KGeneralMethodRequest::start(page, *widget, call);
}

} // namespace

const MemberList& KJsApiWebview::members()
{
    using namespace viewmembers;
    using Host = KJsApiWebWidget;
    using SetSize = void (QWidget::*)(const QSize&);
    static const MemberList list {
        "A view and its window: that of the calling page, of which every page has its own, or another one from "
        "`WebviewMgr`. Lengths are in CSS pixels.",
        {
            listenersOf<Shell, HideEvent>(u"addHideListener", u"removeHideListener"),
            listenersOf<Shell, DestroyEvent>(u"addDestroyListener", u"removeDestroyListener"),
            listenersOf<Shell, ShowEvent>(u"addShowListener", u"removeShowListener"),
            listenersOf<Shell, CloseEvent>(u"addCloseListener", u"removeCloseListener"),
            listenersOf<Shell, ActivationEvent>(
                u"addWindowActivateStateListener", u"removeWindowActivateStateListener"),
            listenersOf<Shell, ResizeEvent>(u"addResizeListener", u"removeResizeListener"),
            listenersOf<WebWidget, DragEnterEvent>(u"addDragEnterListener", u"removeDragEnterListener"),
            listenersOf<WebWidget, WebviewEvent>(u"addWebviewEventListener", u"removeWebviewEventListener"),
            row<&destroy>(u"destroy", {}, "Closes the window for good."),
            row<&showView>(u"show", {}, "Shows the view and its window."),
            forwards<&QWidget::hide>(u"hide", {}, "Hides the window."),
            row<&takeFocus>(
                u"takeFocus", {}, "Activates the window and gives the keyboard focus to the page."),
            row<&setMode>(u"setMode", { { Type::Boolean, "modal" } },
                "Makes the window modal for the whole application, or not modal; when it is next shown."),
            forwards<&Host::setResizeable, bool>(u"setResizeable", { { Type::Boolean, "resizeable" } },
                "Sets whether the user may change the size of the window."),
            row<&setWindowTitle>(
                u"setWindowTitle", { { Type::String, "title" } }, "Sets the title of the window."),
            row<&setWindowBackgroundColor>(u"setWindowBackgroundColor", { Type::JsValue },
                "Sets the colour behind the page. Returns whether the suite has applied it.",
                { &WrongParameters }),
            row<&setEnableStayOnTop>(u"setEnableStayOnTop", { { Type::Boolean, "onTop" } },
                "Keeps the window above others, or no longer."),
            row<&getSize>(u"getSize", {}, "Returns the size of the view."),
            row<&getScreenNumber>(u"getScreenNumber", {},
                "Returns the number of the screen with the window, -1 where it is on none."),
            forwards<&QWidget::isMaximized>(u"isMaximize", {}, "Returns whether the window is maximised."),
            forwards<&QWidget::isMinimized>(u"isMinimize", {}, "Returns whether the window is minimised."),
            forwards<&QWidget::isFullScreen>(
                u"isFullScreen", {}, "Returns whether the window fills the screen."),
            row<&setWindowFlags>(u"setWindowFlags",
                { { Type::JsValue, "flags", "values of `Qt::WindowType`, as numbers" } },
                "Adds to the flags of the window.", { &MissingParameters, &WrongParameters }),
            row<&setWindowFlag>(u"setWindowFlag", { Type::JsValue },
                "Sets a flag of the window, or clears it.", { &WrongParameters }),
            row<&setAttribute>(u"setAttribute", { Type::JsValue },
                "Sets an attribute of the window, or clears it.", { &WrongParameters }),
            row<&setRoundFillColor>(
                u"setRoundFillColor", { Type::JsValue }, "Sets the colour outside round corners."),
            forwards<&Host::setDisableScrollBar, bool>(u"setDisableScrollBar",
                { { Type::Boolean, "disable" } }, "Hides the scroll bars of the page, or shows them."),
            forwards<&Host::setDisableXScrollBar, bool>(u"setDisableXScrollBar",
                { { Type::Boolean, "disable" } },
                "Hides the horizontal scroll bar of the page, or shows it."),
            forwards<&Host::setDisableYScrollBar, bool>(u"setDisableYScrollBar",
                { { Type::Boolean, "disable" } }, "Hides the vertical scroll bar of the page, or shows it."),
            row<&getGeometry>(u"getGeometry", {}, "Returns where on the screen the view is."),
            row<&setGeometry>(u"setGeometry", { Type::JsValue }, "Moves the window. Its size stays."),
            forwards<static_cast<SetSize>(&QWidget::resize), WindowSize>(
                u"setSize", { Type::JsValue }, "Sets the size of the window."),
            forwards<&Host::addDragArea, DragArea>(u"setDragArea", { Type::JsValue },
                "Adds an area of the view by which the user can drag the window."),
            forwards<&Host::clearDragArea>(u"clearDragArea", {}, "Removes all areas of `setDragArea`."),
            forwards<&Host::addBlackDragArea, DragArea>(u"setBlackDragArea", { Type::JsValue },
                "Adds an area by which the window can not be dragged, though it lies in one by which it can."),
            forwards<&Host::clearBlackDragArea>(
                u"clearBlackDragArea", {}, "Removes all areas of `setBlackDragArea`."),
            forwards<&QWidget::showMaximized>(u"setMaximize", {}, "Maximises the window, and shows it."),
            forwards<&QWidget::showMinimized>(u"setMinimize", {}, "Minimises the window."),
            forwards<&QWidget::showNormal>(
                u"setRestore", {}, "Shows the window as it was before it was maximised or minimised."),
            forwards<&QWidget::showFullScreen>(u"setFullScreen", {}, "Has the window fill the screen."),
            forwards<static_cast<SetSize>(&QWidget::setMinimumSize), MinimumSize>(
                u"setMinimumSize", { Type::JsValue }, "Sets the smallest size of the window."),
            forwards<static_cast<SetSize>(&QWidget::setMaximumSize), MaximumSize>(
                u"setMaximumSize", { Type::JsValue }, "Sets the largest size of the window."),
            forwards<&QWidget::setMinimumWidth, WindowLength>(
                u"setMinimumWidth", { { Type::JsValue, "width" } }, "Sets the smallest width of the window."),
            forwards<&QWidget::setMinimumHeight, WindowLength>(u"setMinimumHeight",
                { { Type::JsValue, "height" } }, "Sets the smallest height of the window."),
            forwards<&QWidget::setMaximumWidth, WindowLength>(
                u"setMaximumWidth", { { Type::JsValue, "width" } }, "Sets the largest width of the window."),
            forwards<&QWidget::setMaximumHeight, WindowLength>(u"setMaximumHeight",
                { { Type::JsValue, "height" } }, "Sets the largest height of the window."),
            forwards<&Host::viewId>(u"getID", {}, "Returns the identifier of the view."),
            forwards<&Host::pageReady>(u"pageReady", {}, "Says that the page has finished loading."),
            forwards<&Host::enableDragEnter, bool>(u"setDragEnterEnable", { { Type::Boolean, "enable" } },
                "Lets files be dragged into the view, or no longer."),
            row<&invokeGeneralMethod>(u"invokeGeneralMethod", { Type::JsValue },
                "Calls a method of the suite's web widget. Returns whether there is such a method; what that returns, "
                "`invokeGeneralMethodAsync` has."),
            row<&invokeGeneralMethodAsync>(u"invokeGeneralMethodAsync", { Type::JsValue },
                "Calls a method of the suite's web widget when this call has returned. Resolves with what it "
                "returns.",
                { &WebWidgetHasGone, &NoGeneralMethod, &PromiseServiceNull }),
        }
    };
    return list;
}

} // namespace jsapi
