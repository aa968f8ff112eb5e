#include "local/network/fetchrequest.h"

#include "local/network/transferqueue.h"

#include <QPointer>

namespace jsapi {

Answer<Promise<HttpResponse>> KFetchRequest::start(KHttpCall::CallOptions options)
{
    const JSContextEnv page = options.page;
    const QString id = options.id;
    auto request = std::make_unique<KFetchRequest>();
    const Answer<void> queued = transferQueue().add(std::make_unique<KHttpCall>(
        std::move(options), [guarded = QPointer<KFetchRequest>(request.get())](const HttpResult& result) {
            if (guarded)
                guarded->settle(result);
        }));
    if (queued.isRefused())
        return queued.refusal();
    Answer<Promise<HttpResponse>> promised = promise(page, std::move(request));
    if (KHttpTransfer* call = promised.isRefused() ? transferQueue().find(page, id) : nullptr)
        call->cancel();
    return promised;
}

void KFetchRequest::settle(const HttpResult& result)
{
    if (const auto* error = std::get_if<NetworkError>(&result))
        reject(rejection(*error));
    else
        resolve(std::get<HttpResponse>(result));
}

} // namespace jsapi
