#include "framework/request.h"

#include "framework/libraryowner.h"

KJSVariant KJsRequest::createPromise(const JSContextEnv& page, std::unique_ptr<KJsRequest> request)
{
    KJSVariant promise;
    if (!request->m_promise.create(page, promise))
        return {};
    request->m_isPromised = true;
    if (request->m_early)
        request->m_early();
    request.release()->setParent(libraryOwner());
    return promise;
}

void KJsRequest::resolve(const QVariant& value)
{
    settle([this, value] { m_promise.resolve({ { heapString("data"), value } }); });
}

void KJsRequest::reject(const jsapi::Refusal& refusal)
{
    settle([this, message = refusal.text()] { m_promise.reject(message); });
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
