#include "framework/request.h"

#include "framework/libraryowner.h"

Reply KJsRequest::promised(Call& call, std::unique_ptr<KJsRequest> request, const char* withoutPromises)
{
    KJSVariant promise;
    if (!request->m_promise.create(call.context(), promise))
        return call.fail(ErrorCode::OperationFailed, withoutPromises);
    request->m_isPromised = true;
    if (request->m_early)
        request->m_early();
    request.release()->setParent(libraryOwner());
    return call.answer(std::move(promise));
}

void KJsRequest::finish(const QVariant& value)
{
    settle([this, value] { m_promise.resolve({ { QString::fromLatin1("data"), value } }); });
}

void KJsRequest::finishRejected(const QString& message)
{
    settle([this, message] { m_promise.reject(message); });
}

void KJsRequest::settle(std::function<void()> action)
{
    if (std::exchange(m_hasFinished, true))
        return;
    if (m_isPromised)
        action();
    else
        m_early = std::move(action);
    deleteLater();
}
