#include "host/vexlite/promises.h"

#include "host/vexlite/conversion.h"
#include "host/vexlite/counted.h"
#include "host/vexlite/scriptvalues.h"

namespace vexlite {

namespace {

constexpr std::int32_t defaultRejectionCode = 3;

/// Numbers are never reused, so a late answer can not settle another promise.
std::int64_t lastPromise = 0;

} // namespace

/// The promise of native code, which may outlive its page and the core.
class Promises::Promise final : public Counted<IJSPromise> {
public:
    Promise(std::int64_t handle, const JSContextEnv& context, const std::shared_ptr<Pages>& pages)
        : m_handle(handle)
        , m_context(context)
        , m_pages(pages)
    {
    }
    ~Promise() override
    {
        const std::shared_ptr<Pages> pages = m_pages.lock();
        if (ScriptPage* page = pages ? pages->find(m_context) : nullptr)
            page->releasePromise(m_handle);
    }

    std::int64_t handle() const { return m_handle; }

private:
    std::int64_t m_handle;
    JSContextEnv m_context;
    std::weak_ptr<Pages> m_pages;
};

std::int64_t promiseHandle(IUnknown* object)
{
    const auto* promise = dynamic_cast<Promises::Promise*>(object);
    return promise ? promise->handle() : 0;
}

std::int64_t promiseHandle(const KJSVariant& value)
{
    const MVARIANT* target = dereference(value.raw());
    return target && target->vt == MV_UNKNOWN && target->punkVal ? promiseHandle(target->punkVal) : 0;
}

Promises::Promises(std::shared_ptr<Pages> pages, CallTrace& trace)
    : m_pages(std::move(pages))
    , m_trace(trace)
{
}

KResult Promises::CreateSettled(JSPromiseState state, const JSContextEnv& context,
    const std::function<void(KJSVariant& value)>& fill, KJSVariant& out)
{
    out = {};
    KJSVariant value;
    if (fill)
        fill(value);
    ScriptPage* page = m_pages->find(context);
    const std::int64_t promise = ++lastPromise;
    if (!page || !page->createPromise(promise))
        return KR_NOT_AVAILABLE;
    out = KJSVariant::fromUnknown(new Promise(promise, context, m_pages));
    settle(*page, promise, { context, m_trace.caller() }, state,
        state == JSPromiseState::Rejected ? makeFailure(defaultRejectionCode, convertToText(value)) : value);
    return KR_OK;
}

std::int64_t Promises::CreatePending(const JSContextEnv& context, KJSVariant& out)
{
    out = {};
    ScriptPage* page = m_pages->find(context);
    if (!page || m_pendingOfPage[context.contextId] >= CoreLimits::pendingPromisesPerPage)
        return 0;
    const std::int64_t promise = ++lastPromise;
    if (!page->createPromise(promise))
        return 0;
    m_pending.emplace(promise, State { context, m_trace.caller() });
    ++m_pendingOfPage[context.contextId];
    out = KJSVariant::fromUnknown(new Promise(promise, context, m_pages));
    return promise;
}

KResult Promises::Answer(
    std::int64_t promise, const JSContextEnv& context, const std::vector<KJSVariant>& list, std::int32_t one)
{
    const auto found = m_pending.find(promise);
    ScriptPage* page = m_pages->find(context);
    if (found == m_pending.end() || !(found->second.context == context) || !page)
        return KR_NOT_AVAILABLE;
    KJSVariant success;
    if (one != 1 || list.size() < 3 || !convertVariant(list[0], MV_BOOL, success))
        return KR_REJECTED;

    // Removed first: script that runs when it is settled must find it settled.
    const State state = std::move(found->second);
    m_pending.erase(found);
    --m_pendingOfPage[context.contextId];
    if (success.raw().boolVal) {
        settle(*page, promise, state, JSPromiseState::Resolved, list[2]);
        return KR_OK;
    }
    const IJSONValue* details = objectOf(list[2]);
    const std::int32_t code =
        details ? details->GetInt32(QStringLiteral("code"), defaultRejectionCode) : defaultRejectionCode;
    settle(*page, promise, state, JSPromiseState::Rejected, makeFailure(code, convertToText(list[1])));
    return KR_OK;
}

void Promises::settle(
    ScriptPage& page, std::int64_t promise, const State& state, JSPromiseState to, const KJSVariant& value)
{
    m_trace.reportSettled(state.context, promise, state.caller, to, value);
    page.settlePromise(promise, to, value);
}

void Promises::dropPage(const JSContextEnv& context)
{
    m_pendingOfPage.erase(context.contextId);
    std::erase_if(m_pending, [&](const auto& entry) { return entry.second.context == context; });
}

} // namespace vexlite
