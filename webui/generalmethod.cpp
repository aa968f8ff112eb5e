#include "webui/generalmethod.h"

#include "webui/invokable.h"

namespace jsapi {

QMetaMethod findGeneralMethod(const KJsApiWebWidget& widget, const QString& name)
{
    return findInvokable(widget, name, QMetaType::QVariant, QMetaType::QVariant);
}

Answer<Promise<QVariant>> KGeneralMethodRequest::start(
    const JSContextEnv& page, KJsApiWebWidget& widget, const GeneralCall& call)
{
    auto request = std::make_unique<KGeneralMethodRequest>();
    request->m_widget = Guarded(&widget);
    request->m_call = call;
    QMetaObject::invokeMethod(request.get(), "invoke", Qt::QueuedConnection);
    return promise(page, std::move(request));
}

void KGeneralMethodRequest::invoke()
{
    if (!m_widget)
        return reject(WebWidgetHasGone);
    const QMetaMethod method = findGeneralMethod(*m_widget, m_call.funcName);
    QVariant returned;
    if (!method.invoke(m_widget.get(), Qt::DirectConnection, Q_RETURN_ARG(QVariant, returned),
            Q_ARG(QVariant, m_call.funcParam)))
        return reject(NoGeneralMethod);
    resolve(returned);
}

} // namespace jsapi
