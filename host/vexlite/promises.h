// Promises: the promise service and the answer channel, on one set of pending promises.
#pragma once

#include "host/vexlite/pages.h"
#include "host/vexlite/trace.h"

namespace vexlite {

class Promises final : public IJSPromiseService, public IJSAnswerChannel {
public:
    /// What promises are settled with is reported to `trace`.
    Promises(std::shared_ptr<Pages> pages, CallTrace& trace);

    /// `fill` is always called first, even if the page is closed.
    KResult CreateSettled(JSPromiseState state, const JSContextEnv& context,
        const std::function<void(KJSVariant& value)>& fill, KJSVariant& out) override;
    std::int64_t CreatePending(const JSContextEnv& context, KJSVariant& out) override;
    /// KR_REJECTED, with the promise still pending, for a list that is not from getAsynRetValList or a wrong
    /// `one`.
    KResult Answer(std::int64_t promise, const JSContextEnv& context, const std::vector<KJSVariant>& list,
        std::int32_t one) override;

    /// Removes the page's pending promises.
    void dropPage(const JSContextEnv& context);
    int pendingCount() const { return static_cast<int>(m_pending.size()); }

private:
    class Promise;
    friend std::int64_t promiseHandle(IUnknown* object);
    struct State {
        JSContextEnv context;
        CallTrace::Caller caller;
    };
    void settle(ScriptPage& page, std::int64_t promise, const State& state, JSPromiseState to,
        const KJSVariant& value);

    std::shared_ptr<Pages> m_pages;
    CallTrace& m_trace;
    std::unordered_map<std::int64_t, State> m_pending;
    std::unordered_map<std::int64_t, int> m_pendingOfPage; ///< by context id
};

} // namespace vexlite
