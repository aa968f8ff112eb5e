#include "webui/panelbridge.h"

#include "suite/kplugin.h"
#include "suite/kxloggerlite.h"
#include "webui/invokable.h"

namespace jsapi {

namespace {

/// By its name: the suite's signals are no symbols, and a connection to a function would be code of the library's that Qt
/// keeps until the signal under way has been emitted.
QMetaMethod findSignal(const QObject& panel, const char* signal)
{
    return panel.metaObject()->method(panel.metaObject()->indexOfSignal(signal));
}

bool invoke(QObject& panel, const QString& name, const QVariantMap& notification)
{
    try {
        return findInvokable(panel, name, QMetaType::QVariantMap)
            .invoke(&panel, Qt::AutoConnection, Q_ARG(QVariantMap, notification));
    } catch (...) {
        return false;
    }
}

} // namespace

bool Argument<PanelNotification>::read(ArgumentReader& reader)
{
    return Converter<QVariantMap>::read(reader.next(), value.values) == Reading::Done
        || reader.refuse(InvalidArgument);
}

QObject* KPanelHandle::findPanel() const
{
    KPluginManager* plugins = KPluginManager::getInstance();
    return plugins ? plugins->getPluginInstanceObject(heapString(m_panel.name)) : nullptr;
}

KPanelHandle::Follower::Connections KPanelHandle::connectTo(QObject& panel)
{
    const QMetaMethod signal = findSignal(panel, m_panel.signal);
    if (!signal.isValid())
        return {};
    const int slot = staticMetaObject.indexOfSlot("slot_panelNotify(QVariantMap)");
    return { connect(&panel, signal, this, staticMetaObject.method(slot)) };
}

Answer<void> KPanelHandle::registerCallback(const JSContextEnv& page, PanelCallback& callback)
{
    const QObject* panel = findPanel();
    if (!panel || !findSignal(*panel, m_panel.signal).isValid())
        return PanelNotFound;
    m_page = page;
    m_callback = std::move(callback.function);
    if (!m_follower)
        m_follower = std::make_unique<Follower>(
            [this] { return findPanel(); }, [this](QObject& found) { return connectTo(found); });
    m_follower->follow();
    return {};
}

Answer<void> KPanelHandle::notify(const QVariantMap& notification)
{
    if (m_follower)
        m_follower->follow();
    QObject* panel = findPanel();
    if (!panel)
        return PanelNotFound;
    // The panel's method may let the page go, and this handle with it.
    const QString method = heapString(m_panel.method);
    if (!invoke(*panel, method, toPanel(notification)))
        return FailedInvokeMethod / method;
    return {};
}

void KPanelHandle::slot_panelNotify(const QVariantMap& notification)
{
    if (!m_callback || !isForPage(notification))
        return;
    const std::wstring panel = QString::fromLatin1(m_panel.name).toStdWString();
    const KJSVariant argument = convertVariant(notification);
    if (argument.isEmpty())
        return KxLoggerLite::writeError(
            L"PanelBridge", L"a notification of " + panel + L" is nested too deep");
    // The callback may register another one, or let the page go.
    const KRef<IJSFunction> callback = hold(*m_callback);
    const QPointer<KPanelHandle> self(this);
    const KResult status = callback->Call(JSApiArguments(&argument, 1), nullptr);
    if (status == KR_OK)
        return;
    KxLoggerLite::writeError(
        L"PanelBridge", L"a page's callback for notifications of " + panel + L" has failed");
    if (status == KR_NOT_AVAILABLE && self && m_callback.get() == callback.get())
        m_callback = {}; // its page has gone
}

Answer<void> registerPanelCallback(KPanelHandle& handle, const JSContextEnv& page, PanelCallback& callback)
{
    return handle.registerCallback(page, callback);
}

Answer<void> notifyPanel(KPanelHandle& handle, const PanelNotification& notification)
{
    return handle.notify(notification.values);
}

} // namespace jsapi
