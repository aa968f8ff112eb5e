#include "host/vexlite/pagefunction.h"

#include <QCoreApplication>
#include <QThread>

namespace vexlite {

KResult PageFunction::QueryInterface(const KIID& iid, void** out)
{
    *out = nullptr;
    if (!(iid == IID_IUnknown) && !(iid == IID_IJSFunction))
        return KR_NO_INTERFACE;
    AddRef();
    *out = static_cast<IJSFunction*>(this);
    return KR_OK;
}

std::uint32_t PageFunction::Release()
{
    const std::uint32_t left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left)
        return left;
    QCoreApplication* application = QCoreApplication::instance();
    if (!application || application->thread() == QThread::currentThread())
        delete this;
    else
        QMetaObject::invokeMethod(
            application, [this] { delete this; }, Qt::QueuedConnection);
    return 0;
}

} // namespace vexlite
