// What pages and the panels of plugins have in common: a page registers one callback for the panel's notifications, and
// sends notifications to the panel.
//
//     class KJObjContractHandle final : public KPanelHandle { ... };             // which panel
//     class KJObjContract final : public KPanelBridge<KJObjContract, KJObjContractHandle> { ... };
//     ...
//     member<&registerPanelCallback, KJObjContract>(u"registerCallback", ...),
//     member<&notifyPanel, KJObjContract>(u"panelNotify", ...),
#pragma once

#include "framework/extensionobject.h"
#include "framework/servicefollower.h"

#include <QCoreApplication>
#include <QVariantMap>

namespace jsapi {

inline constexpr Failure ThisIsNull { ErrorCode::OperationFailed, "pThis is null" };
inline constexpr Failure HandleIsNull { ErrorCode::OperationFailed, "handle is null" };
inline constexpr Failure InvalidArgument { ErrorCode::BadArgument, "Invalid argument" };
inline constexpr Failure PanelNotFound { ErrorCode::OperationFailed, "Panel not Found" };
inline constexpr Failure FailedInvokeMethod { ErrorCode::OperationFailed, "Failed invoke method: %1" };

/// A panel.
struct Panel {
    const char* name;   ///< of the plugin whose instance object it is
    const char* signal; ///< with its parameter, a QVariantMap
    const char* method; ///< its name; it has one parameter, too, a QVariantMap
};

/// A function of script's that is called with notifications.
struct PanelCallback {
    KRef<IJSFunction> function;
};
template <> struct Argument<PanelCallback> : ArgumentValue<PanelCallback> {
    using ScriptType = Watcher<QVariantMap>;
    static constexpr std::array Refusals { &InvalidArgument };
    bool read(ArgumentReader& reader)
    {
        value.function = queryFunction(reader.next().raw());
        return value.function || reader.refuse(InvalidArgument);
    }
};

/// A plain object, without functions and native objects in it.
struct PanelNotification {
    QVariantMap values;
};
template <> struct Argument<PanelNotification> : ArgumentValue<PanelNotification> {
    using ScriptType = QVariantMap;
    static constexpr std::array Refusals { &InvalidArgument };
    bool read(ArgumentReader& reader);
};

/// The page's side of a panel, owned by the page's object. The panel is the suite's, which may end it, make it later or
/// replace it: it is looked for in each call, and followed from the first callback on. [GUI thread]
class KPanelHandle : public QObject {
    Q_OBJECT

public:
    /// `panel` is a constant of the library's.
    explicit KPanelHandle(const Panel& panel)
        : m_panel(panel)
    {
    }

    /// Calls `callback` with the panel's notifications, in place of an earlier one.
    Answer<void> registerCallback(const JSContextEnv& page, PanelCallback& callback);
    /// Has the panel's method called before this returns, or by its own thread where it has another one.
    Answer<void> notify(const QVariantMap& notification);

protected:
    /// The page that has registered the callback.
    const JSContextEnv& page() const { return m_page; }
    /// Whether a notification of the panel's is for this page.
    virtual bool isForPage(const QVariantMap&) { return true; }
    /// What the panel gets for a page's notification.
    virtual QVariantMap toPanel(const QVariantMap& notification) const { return notification; }

private:
    using Follower = KServiceFollower<QObject>;

    /// The panel that there is now; null when there is none.
    QObject* findPanel() const;
    Follower::Connections connectTo(QObject& panel);

    const Panel& m_panel;
    std::unique_ptr<Follower> m_follower;
    JSContextEnv m_page {};
    KRef<IJSFunction> m_callback;

public Q_SLOTS:
    // For the panel.
    void slot_panelNotify(const QVariantMap& notification);
};

/// The handle of the object that is called, as the first parameter.
template <> struct Argument<KPanelHandle> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &ThisIsNull, &HandleIsNull };
    template <typename Object> bool read(ArgumentReader& reader, Object& object)
    {
        handle = object.handle();
        return handle || reader.refuse(HandleIsNull);
    }
    KPanelHandle& get() const { return *handle; }
    KPanelHandle* handle = nullptr;
};

Answer<void> registerPanelCallback(KPanelHandle& handle, const JSContextEnv& page, PanelCallback& callback);
Answer<void> notifyPanel(KPanelHandle& handle, const PanelNotification& notification);

/// An object with a handle, which needs an application.
template <typename T, typename Handle> class KPanelBridge : public KJCExtendJsObj<T> {
public:
    static constexpr const Failure& NoObject = ThisIsNull;

    KPanelHandle* handle()
    {
        if (!m_handle && QCoreApplication::instance())
            m_handle = std::make_unique<Handle>();
        return m_handle.get();
    }

private:
    std::unique_ptr<KPanelHandle> m_handle;
};

} // namespace jsapi
