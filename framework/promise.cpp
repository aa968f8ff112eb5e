#include "framework/promise.h"

#include "framework/novaextensionutils.h"
#include "framework/values.h"
#include "vexlite/jsapiutil.h"

namespace {

IJSPromiseService* promiseService()
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    return core ? core->PromiseService() : nullptr;
}

} // namespace

KResult KNovaExtensionUtils::setPromiseReject(
    const JSContextEnv& context, KJSVariant& result, const QString& message)
{
    if (IJSPromiseService* service = promiseService()) {
        service->CreateSettled(
            JSPromiseState::Rejected, context, [&](KJSVariant& text) { text = makeString(message); }, result);
    }
    return KR_REJECTED;
}

KPendingPromise::~KPendingPromise()
{
    if (m_id != 0)
        reject(heapString("request dropped."));
}

bool KPendingPromise::create(const JSContextEnv& context, KJSVariant& promise)
{
    // A promise that could not be settled later would keep the page waiting for ever.
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    IJSPromiseService* service = core && core->AnswerChannel() ? core->PromiseService() : nullptr;
    m_id = service ? service->CreatePending(context, promise) : 0;
    m_context = context;
    return m_id != 0;
}

void KPendingPromise::settle(bool success, const QString& message, const QVariantMap& values)
{
    const std::int64_t id = std::exchange(m_id, 0);
    IVEXJSCore* core = id ? vexlite::GetVEXJSCore() : nullptr;
    if (IJSAnswerChannel* channel = core ? core->AnswerChannel() : nullptr)
        channel->Answer(id, m_context, KJSApiUtil::getAsynRetValList(success ? -1 : 0, message, values), 1);
}
