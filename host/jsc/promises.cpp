#include "host/jsc/promises.h"

#include "host/jsc/pagestate.h"
#include "host/jsc/toscript.h"

namespace engine::jsc {

bool Promises::create(std::int64_t id)
{
    JSContextRef ctx = m_page.ctx();
    Pending pending {};
    pending.promise = JSObjectMakeDeferredPromise(ctx, &pending.resolve, &pending.reject, nullptr);
    if (!pending.promise)
        return false;
    JSValueProtect(ctx, pending.promise);
    JSValueProtect(ctx, pending.resolve);
    JSValueProtect(ctx, pending.reject);
    m_pending.emplace(id, pending);
    return true;
}

void Promises::settle(std::int64_t id, JSPromiseState state, const KJSVariant& value)
{
    JSContextRef ctx = m_page.ctx();
    const auto found = m_pending.find(id);
    if (found == m_pending.end())
        return;
    const Pending pending = found->second;
    m_pending.erase(found);
    m_settled.emplace_back(id, pending.promise);

    ToScript convert(m_page);
    JSValueRef converted =
        state == JSPromiseState::Rejected ? convert.error(value) : convert.value(value.raw());
    const bool isRejected = state == JSPromiseState::Rejected || !converted;
    if (!converted)
        converted = convert.thrown();
    JSObjectCallAsFunction(
        ctx, isRejected ? pending.reject : pending.resolve, nullptr, 1, &converted, nullptr);
    JSValueUnprotect(ctx, pending.resolve);
    JSValueUnprotect(ctx, pending.reject);
}

JSObjectRef Promises::find(std::int64_t id) const
{
    if (const auto found = m_pending.find(id); found != m_pending.end())
        return found->second.promise;
    for (const auto& [settledId, promise] : m_settled) {
        if (settledId == id)
            return promise;
    }
    return nullptr;
}

void Promises::dropSettled()
{
    if (m_settled.empty())
        return;
    const auto settled = std::move(m_settled);
    m_settled.clear();
    for (const auto& entry : settled)
        JSValueUnprotect(m_page.ctx(), entry.second);
}

void Promises::clear()
{
    dropSettled();
    const auto pending = std::move(m_pending);
    m_pending.clear();
    for (const auto& [id, one] : pending) {
        JSValueUnprotect(m_page.ctx(), one.promise);
        JSValueUnprotect(m_page.ctx(), one.resolve);
        JSValueUnprotect(m_page.ctx(), one.reject);
    }
}

} // namespace engine::jsc
