// The events of a web view's window.
#pragma once

#include "framework/events.h"
#include "local/csspixels.h"

#include <QObject>

namespace jsapi {

class KJsApiWebview;

struct NoPayload {
    static constexpr bool AsArguments = true;
    static constexpr auto fields() { return std::tuple(); }
};

struct WindowActivation {
    bool active;
    static constexpr bool AsArguments = true;
    static constexpr auto fields() { return std::tuple(property("active", &WindowActivation::active, "")); }
};

/// A size in CSS pixels.
struct ViewSize {
    std::int32_t w;
    std::int32_t h;
    static constexpr auto fields()
    {
        return std::tuple(property("w", &ViewSize::w, "the width, in CSS pixels"),
            property("h", &ViewSize::h, "the height, in CSS pixels"));
    }
};

struct WindowResize {
    ViewSize size;
    ViewSize oldSize;
    static constexpr bool AsArguments = true;
    static constexpr auto fields()
    {
        return std::tuple(
            property("size", &WindowResize::size, ""), property("oldSize", &WindowResize::oldSize, ""));
    }
};

struct DraggedFiles {
    QStringList paths;
    static constexpr bool AsArguments = true;
    static constexpr auto fields() { return std::tuple(property("paths", &DraggedFiles::paths, "")); }
};

struct WebviewValue {
    QVariant value;
    static constexpr bool AsArguments = true;
    static constexpr auto fields() { return std::tuple(property("value", &WebviewValue::value, "")); }
};

// Their names are seen by nobody but the hub.
inline constexpr Event<NoPayload> HideEvent { "hide", "the window has been hidden" };
inline constexpr Event<NoPayload> ShowEvent { "show", "the window has been shown" };
inline constexpr Event<NoPayload> CloseEvent { "close", "the window has been closed" };
inline constexpr Event<NoPayload> DestroyEvent { "destroy", "the window has been destroyed" };
inline constexpr Event<WindowActivation> ActivationEvent { "activation",
    "the window has become the active one, or is it no longer" };
inline constexpr Event<WindowResize> ResizeEvent {
    "resize",
    "the window has another size; the second argument is the size before, 0 by 0 when the window is first shown"
};
inline constexpr Event<DraggedFiles> DragEnterEvent { "dragEnter",
    "files are dragged into the view, after `setDragEnterEnable(true)`" };
inline constexpr Event<WebviewValue> WebviewEvent { "webviewEvent",
    "the suite has something to say to the page of the view" };

/// Passes signals of a view's shell and of its web widget on to listeners. Owned by the Webview object, through whose hub
/// the events go. [GUI thread]
class KJsApiViewEventHandle : public QObject {
    Q_OBJECT

public:
    explicit KJsApiViewEventHandle(KJsApiWebview& webview)
        : m_webview(webview)
    {
    }

    /// With the listeners.
    IJSEventHub& hub() const;
    /// Connects the signal of an event, once. It stays connected when a listener is removed, since a hub does not say
    /// whether others are left.
    void connectTo(QObject& source, const char* event);

private:
    template <typename Payload> void emitToPages(const Event<Payload>& event, const Payload& payload);

    KJsApiWebview& m_webview;

public Q_SLOTS:
    void onShellWidgetHide();
    void onShellWidgetShow();
    void onShellWidgetClose();
    void onShellWidgetDestroy();
    void onShellWidgetWindowActiveChanged(bool active);
    void onShellWidgetResize(const QSize& size, const QSize& oldSize);
    void onWebWidgetDragEnter(const QStringList& paths);
    void onWebWidgetEvent(const QVariant& value);
};

inline ViewSize toCssPixels(const QSize& size)
{
    return { toCssPixels(size.width()), toCssPixels(size.height()) };
}

} // namespace jsapi
