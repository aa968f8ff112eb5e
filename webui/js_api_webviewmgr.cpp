#include "webui/js_api_webviewmgr.h"

#include "local/innerpage.h"
#include "suite/klitestyle.h"
#include "suite/kviewpage.h"
#include "vexlite/webwidgets.h"
#include "webui/js_api_webview.h"
#include "webui/webwidgetkinds.h"
#include "webui/windowvalues.h"

#include <QApplication>
#include <QPointer>
#include <algorithm>

namespace jsapi {

namespace {

constexpr Failure EmptyViewId { ErrorCode::BadArgument, "empty view id" };
constexpr Failure NoViewId { ErrorCode::OperationFailed, "empty view id" };
constexpr Failure NoBrowser { ErrorCode::OperationFailed, "empty pBrowser" };
constexpr Failure NoSuchClass { ErrorCode::OperationFailed, "Web Widget Class Not Registered!" };
constexpr Failure NoSuchParent { ErrorCode::OperationFailed, "Invalid Given Parent Widget" };
constexpr Failure NotMade { ErrorCode::OperationFailed, "create web widget fail!" };

struct WindowAttributes {
    bool modal = false;
    std::optional<bool> allowResize;
    static constexpr auto fields()
    {
        using Self = WindowAttributes;
        return strictly(
            std::tuple(optional("modal", &Self::modal, "the window is modal for the whole application"),
                optional("allowResize", &Self::allowResize, "the user may change the size of the window")));
    }
};

struct WindowGeometry {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::optional<std::int32_t> width;
    std::optional<std::int32_t> height;
    static constexpr auto fields()
    {
        using Self = WindowGeometry;
        return strictly(std::tuple(
            optional("x", &Self::x,
                "where on the screen, in CSS pixels, if `x` and `y` are above 0; otherwise the window system "
                "decides"),
            optional("y", &Self::y, "see `x`"),
            optional("width", &Self::width, "in CSS pixels; the window's own if it is left out"),
            optional("height", &Self::height, "in CSS pixels; the window's own if it is left out")));
    }
};

} // namespace

struct KJsApiWebviewMgr::CreateOptions {
    QString id;
    QString windowType = heapString("Dialog");
    bool hasParent = false;
    QString parentName = heapString("MainWindow");
    WindowAttributes attrs;
    WindowGeometry geo;
    bool isShow = false;
    QVariantMap paramExtra;
    static constexpr auto fields()
    {
        using Self = CreateOptions;
        return strictly(std::tuple(
            required("id", &Self::id, "the identifier of the view, which no other one has", EmptyViewId),
            optional("windowType", &Self::windowType,
                "`Dialog`, `Popup`, `Tab`, or the name of a class of windows that the suite knows"),
            optional("hasParent", &Self::hasParent,
                "a window of the suite owns the new one; in the case of `Tab`, closes with it"),
            optional("parentName", &Self::parentName, "which window of the suite"),
            optional("attrs", &Self::attrs, "how the window behaves"),
            optional("geo", &Self::geo, "its place and size"),
            optional("isShow", &Self::isShow, "show the window at once"),
            optional("paramExtra", &Self::paramExtra, ParamExtraDoc)));
    }
};

/// The identifier of a view; anything but a string is refused.
struct KJsApiWebviewMgr::ViewId {
    QString string;
};
template <> struct Argument<KJsApiWebviewMgr::ViewId> : ArgumentValue<KJsApiWebviewMgr::ViewId> {
    using ScriptType = QString;
    static constexpr std::array Refusals { &WrongParameters };
    bool read(ArgumentReader& reader)
    {
        return readValue(reader.next(), value.string, true) != Reading::Wrong
            || reader.refuse(WrongParameters);
    }
};

const MemberList& KJsApiWebviewMgr::members()
{
    using Self = KJsApiWebviewMgr;
    static const MemberList list = MemberList { "Opens web-view windows and finds them again.",
        {
            member<&Self::create>(u"create", Category::Usual, Type::Object, { Type::JsValue },
                "Opens a window with a new view. The window stays when the page goes.",
                { &NoSuchClass, &NoSuchParent, &NotMade, &EmptyHandle }),
            member<&Self::getWebview>(u"getWebview", Category::Usual, Type::Object,
                { { Type::String, "viewId", "its identifier" } }, "Finds a view that is there.",
                { &NoViewId, &NoBrowser, &EmptyHandle }),
        } }.handingOut<KJsApiWebview>();
    return list;
}

namespace {

/// The windows that the suite offers as parents under a name: the active one among them, or else the first.
QWidget* findParent(const QString& name)
{
    const QByteArray property = KWebWidgetParentsProperty + name.toUtf8();
    QWidget* found = nullptr;
    for (const QVariant& offered : qApp->property(property).toList()) {
        auto* window = qobject_cast<QWidget*>(offered.value<QObject*>());
        if (window && (!found || window->isActiveWindow()))
            found = window;
        if (found && found->isActiveWindow())
            break;
    }
    return found;
}

/// The class of a kind, or a class that is named itself.
QString classOf(const QString& windowType)
{
    static const QMap<QString, QString> kinds {
        { heapString("Dialog"), heapString("KJsApiDialogWebWidget") },
        { heapString("Popup"), heapString("KJsApiPopupWebWidget") },
        { heapString("Tab"), heapString("KJsApiTabWebWidget") },
    };
    return kinds.value(windowType, windowType);
}

void place(QWidget& window, const WindowGeometry& geometry)
{
    const QSize given = scaleSize(geometry.width.value_or(0), geometry.height.value_or(0));
    const QSize size(
        geometry.width ? given.width() : window.width(), geometry.height ? given.height() : window.height());
    if (geometry.x > 0 && geometry.y > 0)
        window.setGeometry(QRect(scaleRect(geometry.x, geometry.y, 0, 0).topLeft(), size));
    else
        window.resize(size);
}

/// A Webview object that is bound to a widget.
Answer<Handle<KJsApiWebview>> handOutWebview(const JSContextEnv& page, KJsApiWebWidget& widget)
{
    KRef<IJSExtentionObject> object = KJsApiWebview::makeFor(page, nullptr);
    auto* webview = dynamic_cast<KJsApiWebview*>(object.get());
    if (!webview)
        return EmptyHandle;
    webview->bindTo(widget);
    return Handle<KJsApiWebview> { std::move(object) };
}

} // namespace

Answer<KJsApiWebWidget*> KJsApiWebviewMgr::makeWidget(const CreateOptions& options)
{
    if (options.windowType == QLatin1String("Tab")) {
        // Of all others the suite's factory knows it.
        if (vexlite::GetWebWidget(options.id))
            return NotMade;
        return new KJsApiTabWebWidget(
            options.id, options.hasParent ? findParent(options.parentName) : nullptr);
    }
    const QString className = classOf(options.windowType);
    if (!KJsApiWebWidgetFactory::isClassRegistered(className))
        return NoSuchClass;
    QWidget* parent = options.hasParent ? findParent(options.parentName) : nullptr;
    if (options.hasParent && !parent)
        return NoSuchParent;
    KJsApiWebWidget* widget = KJsApiWebWidgetFactory::createWidget(className, options.id, parent);
    if (!widget)
        return NotMade;
    return widget;
}

Answer<Handle<KJsApiWebview>> KJsApiWebviewMgr::create(const JSContextEnv& page, const CreateOptions& options)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return NotMade;
    Answer<KJsApiWebWidget*> made = makeWidget(options);
    if (made.isRefused())
        return made.refusal();
    // Whoever watches the suite's windows may destroy it at any step.
    const QPointer<KJsApiWebWidget> widget(made.value());
    widget->setWindowModality(options.attrs.modal ? Qt::ApplicationModal : Qt::NonModal);
    if (widget)
        widget->setProperty(KWebWidgetParamExtraProperty, options.paramExtra);
    if (widget && options.attrs.allowResize)
        widget->setResizeable(*options.attrs.allowResize);
    if (widget)
        place(*widget, options.geo);
    if (widget && options.isShow)
        widget->beforeShow();
    if (widget && options.isShow)
        widget->show();
    if (!widget)
        return NotMade;
    auto answer = handOutWebview(page, *widget);
    if (answer.isRefused())
        widget->deleteLater();
    return answer;
}

Answer<Handle<KJsApiWebview>> KJsApiWebviewMgr::getWebview(const JSContextEnv& page, const ViewId& viewId)
{
    if (viewId.string.isEmpty())
        return NoViewId;
    KJsApiWebWidget* widget = vexlite::GetWebWidget(viewId.string);
    if (!widget)
        return NoBrowser;
    return handOutWebview(page, *widget);
}

} // namespace jsapi
