#include "host/jsc/promises.h"

#include "host/jsc/pagestate.h"
#include "host/jsc/toscript.h"

#include <algorithm>

namespace engine::jsc {

bool Promises::create(std::int64_t id)
{
    JSContextRef ctx = m_page.ctx();
    Record record;
    record.promise = JSObjectMakeDeferredPromise(ctx, &record.resolve, &record.reject, nullptr);
    if (!record.promise)
        return false;
    record.member = m_page.callingMember();
    JSValueProtect(ctx, record.promise);
    JSValueProtect(ctx, record.resolve);
    JSValueProtect(ctx, record.reject);
    m_records.emplace(id, record);
    return true;
}

void Promises::settle(std::int64_t id, JSPromiseState state, const KJSVariant& value)
{
    const auto found = m_records.find(id);
    if (found == m_records.end() || !found->second.resolve)
        return;
    Record settling = found->second;
    found->second.resolve = found->second.reject = nullptr;
    if (!settling.promise)
        m_records.erase(found);

    ToScript convert(m_page);
    const bool rejects = state == JSPromiseState::Rejected;
    JSValueRef answer = rejects ? convert.error(value) : convert.value(value.raw());
    JSObjectRef settle = rejects || !answer ? settling.reject : settling.resolve;
    if (!answer)
        answer = convert.thrown();
    if (rejects && !settling.member.isEmpty())
        noteRefusal(m_page, settling.member, answer);
    JSObjectCallAsFunction(m_page.ctx(), settle, nullptr, 1, &answer, nullptr);
    unprotect(settling.resolve);
    unprotect(settling.reject);
}

void Promises::release(std::int64_t id)
{
    const auto found = m_records.find(id);
    if (found == m_records.end())
        return;
    unprotect(found->second.promise);
    if (!found->second.resolve)
        m_records.erase(found);
}

JSObjectRef Promises::find(std::int64_t id) const
{
    const auto found = m_records.find(id);
    return found == m_records.end() ? nullptr : found->second.promise;
}

bool Promises::anyPending() const
{
    return std::any_of(
        m_records.begin(), m_records.end(), [](const auto& entry) { return entry.second.resolve; });
}

void Promises::addPending(PendingList& list) const
{
    for (const auto& [id, record] : m_records) {
        if (record.resolve)
            list.push_back({ Pending::Kind::Promise, record.member, {}, record.since });
    }
}

void Promises::clear()
{
    auto records = std::move(m_records);
    m_records.clear();
    for (auto& [id, record] : records) {
        unprotect(record.promise);
        unprotect(record.resolve);
        unprotect(record.reject);
    }
}

void Promises::unprotect(JSObjectRef& object)
{
    if (object)
        JSValueUnprotect(m_page.ctx(), object);
    object = nullptr;
}

} // namespace engine::jsc
