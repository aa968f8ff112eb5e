#include "webui/skineventhandle.h"

#include "suite/kdrawhelper.h"

#include <QCoreApplication>

namespace jsapi {

KSkin* findSkinService()
{
    const QCoreApplication* application = QCoreApplication::instance();
    auto* service = application
        ? application->findChild<QObject*>(heapString("novaoffice"), Qt::FindDirectChildrenOnly)
        : nullptr;
    return service && service->inherits("KSkin") ? static_cast<KSkin*>(service) : nullptr;
}

KSkinEventHandle::KSkinEventHandle(IKJSExtentionApiEvent& skin, std::function<void()> forget)
    : m_skin(skin)
    , m_forget(std::move(forget))
    , m_known(KDrawHelper::getCurrentSkinNameFromTheme())
    , m_service(findSkinService, [this](KSkin& service) { return connectTo(service); })
{
}

KSkinEventHandle::Service::Connections KSkinEventHandle::connectTo(KSkin& service)
{
    m_forget();
    // Another service may use another skin; listeners are informed when the call in hand has returned.
    if (m_known != KDrawHelper::getCurrentSkinNameFromTheme())
        announceLater();
    return { connect(&service, SIGNAL(sigSkinChanged()), this, SLOT(onSkinChanged())) };
}

void KSkinEventHandle::announceLater()
{
    QMetaObject::invokeMethod(this, &KSkinEventHandle::onSkinChanged, Qt::QueuedConnection);
}

void KSkinEventHandle::onSkinChanged()
{
    m_forget();
    // From within a listener: the others first get what they have not got yet.
    if (m_isAnnouncing) {
        m_hasChangedMeanwhile = true;
        return;
    }
    m_isAnnouncing = true;
    const QString name = KDrawHelper::getCurrentSkinNameFromTheme();
    const QString previousName = std::exchange(m_known, name);
    m_skin.send(SkinChangeEvent, { name, previousName });
    m_isAnnouncing = false;
    if (std::exchange(m_hasChangedMeanwhile, false))
        announceLater();
}

} // namespace jsapi
