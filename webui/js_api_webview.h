#pragma once

#include "framework/request.h"
#include "suite/kjsapiwebwidget.h"
#include "webui/guarded.h"
#include "webui/js_api_vieweventhandle.h"

namespace jsapi {

inline constexpr Failure NoWebWidget { ErrorCode::OperationFailed, "empty webwidget" };
inline constexpr Failure NoShell { ErrorCode::OperationFailed, "empty webshellwidget" };

// Parameters of members: what a Webview object stands for. Each is refused once it has been destroyed, which anything may
// do that lets others run.

/// The web widget, refused with NoWebWidget.
struct WebWidget : Guarded<KJsApiWebWidget> { };
/// The window that it is, or was in when the object was bound to it; refused with NoShell.
struct Shell : Guarded<QWidget> { };
/// One of them as a source of events; refused with EmptyHandle first, where the suite has no event hubs.
template <typename Target> struct EventSource : Target {
    KJsApiViewEventHandle* handle = nullptr;
};

/// "NovaExtension.Webview": a view and its window. A page's own is bound to the web widget that shows the page, when the
/// first member is called that needs it; others are bound by WebviewMgr.
class KJsApiWebview final : public KJCExtendJsObj_InstanceLevelEvent<KJsApiWebview> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Webview";
    static const MemberList& members();

    /// Stands for this widget and its window from now on.
    void bindTo(KJsApiWebWidget& widget);

    Answer<WebWidget> findWidget(const JSContextEnv& page);
    Answer<Shell> findShell(const JSContextEnv& page);
    Answer<EventSource<WebWidget>> findWidgetEvents(const JSContextEnv& page);
    Answer<EventSource<Shell>> findShellEvents(const JSContextEnv& page);

private:
    void bindToPage(const JSContextEnv& page);
    /// Null without event hubs.
    KJsApiViewEventHandle* handle();

    WebWidget m_widget;
    Shell m_shell;
    bool m_isBound = false;
    std::unique_ptr<KJsApiViewEventHandle> m_handle;
};

} // namespace jsapi
