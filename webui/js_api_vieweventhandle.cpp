#include "webui/js_api_vieweventhandle.h"

#include "webui/js_api_webview.h"

#include <cstring>

namespace jsapi {

IJSEventHub& KJsApiViewEventHandle::hub() const
{
    return *m_webview.hub();
}

void KJsApiViewEventHandle::connectTo(QObject& source, const char* event)
{
    // By name: so the suite's signals are no symbols, and none of these connections is the library's code.
    const struct {
        const char* event;
        const char* signal;
        const char* slot;
    } rows[] = {
        { HideEvent.name, SIGNAL(sigHidden()), SLOT(onShellWidgetHide()) },
        { ShowEvent.name, SIGNAL(sigShown()), SLOT(onShellWidgetShow()) },
        { CloseEvent.name, SIGNAL(sigClosed()), SLOT(onShellWidgetClose()) },
        { DestroyEvent.name, SIGNAL(destroyed()), SLOT(onShellWidgetDestroy()) },
        { ActivationEvent.name, SIGNAL(sigWindowActiveChanged(bool)),
            SLOT(onShellWidgetWindowActiveChanged(bool)) },
        { ResizeEvent.name, SIGNAL(sigResized(QSize, QSize)), SLOT(onShellWidgetResize(QSize, QSize)) },
        { DragEnterEvent.name, SIGNAL(sigDragEnter(QStringList)), SLOT(onWebWidgetDragEnter(QStringList)) },
        { WebviewEvent.name, SIGNAL(sigWebviewEvent(QVariant)), SLOT(onWebWidgetEvent(QVariant)) },
    };
    for (const auto& row : rows) {
        if (std::strcmp(row.event, event) == 0)
            connect(&source, row.signal, this, row.slot, Qt::UniqueConnection);
    }
}

template <typename Payload>
void KJsApiViewEventHandle::emitToPages(const Event<Payload>& event, const Payload& payload)
{
    // A listener may let the object go, and this handle with it.
    const KRef<KJsApiWebview> held = hold(m_webview);
    m_webview.send(event, payload);
}

void KJsApiViewEventHandle::onShellWidgetHide()
{
    emitToPages(HideEvent, {});
}

void KJsApiViewEventHandle::onShellWidgetShow()
{
    emitToPages(ShowEvent, {});
}

void KJsApiViewEventHandle::onShellWidgetClose()
{
    emitToPages(CloseEvent, {});
}

void KJsApiViewEventHandle::onShellWidgetDestroy()
{
    emitToPages(DestroyEvent, {});
}

void KJsApiViewEventHandle::onShellWidgetWindowActiveChanged(bool active)
{
    emitToPages(ActivationEvent, { active });
}

void KJsApiViewEventHandle::onShellWidgetResize(const QSize& size, const QSize& oldSize)
{
    emitToPages(ResizeEvent, { toCssPixels(size), toCssPixels(oldSize) });
}

void KJsApiViewEventHandle::onWebWidgetDragEnter(const QStringList& paths)
{
    emitToPages(DragEnterEvent, { paths });
}

void KJsApiViewEventHandle::onWebWidgetEvent(const QVariant& value)
{
    emitToPages(WebviewEvent, { value });
}

} // namespace jsapi
