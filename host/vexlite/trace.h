// CallTrace: the trace hook, which measures calls for a tracer and hides members.
#pragma once

#include "host/vexlite/core.h"

#include <chrono>

namespace vexlite {

class CallTrace final : public IJSTraceHook {
public:
    using Tracer = std::function<void(const TracedCall&)>;
    /// Makes the call, with the value that recordEnd() will get.
    using Invoke = std::function<KResult(std::int64_t extra)>;

    void setTracer(Tracer tracer);
    void setDenyMask(std::uint32_t mask) { m_denyMask = mask; }
    bool isTracing() const { return m_tracer != nullptr; }
    bool isNeeded() const { return isTracing() || m_denyMask; }

    /// Makes a call and reports it when it has ended, so inner calls are reported before outer ones.
    KResult trace(const JSContextEnv& context, const KJSVariant& exception, const Invoke& invoke);
    struct Caller {
        QString object; ///< null when no call is traced
        QString member;
    };
    /// Whose call is in progress.
    Caller caller() const
    {
        return m_innermost ? Caller { m_innermost->object, m_innermost->member } : Caller {};
    }
    /// Reports that the promise which `caller` made was rejected.
    void reportRejection(const Caller& caller, std::int32_t code, const QString& message);
    /// Records the end of the innermost call, if `extra` identifies it; does nothing otherwise.
    void recordEnd(const JSContextEnv& context, std::int64_t extra)
    {
        if (m_innermost && extra == reinterpret_cast<std::int64_t>(m_innermost)
            && m_innermost->context == context)
            m_innermost->end = Clock::now();
    }

    bool FilterTable(const QString& objectName, const JSContextEnv& context, const JSMemberTable& table,
        JSMemberTable& replacement) override;
    void CallNotice(
        const QString& objectName, const JSContextEnv& context, const JSMemberEntry* member) override;

private:
    using Clock = std::chrono::steady_clock;
    struct ActiveCall {
        ActiveCall* outer;
        JSContextEnv context;
        QString object; ///< null before CallNotice()
        QString member;
        Clock::time_point start;
        Clock::time_point end; ///< the epoch until recordEnd()
    };

    std::shared_ptr<const Tracer> m_tracer; ///< shared: a tracer may replace itself while it runs
    std::uint32_t m_denyMask = 0;
    ActiveCall* m_innermost = nullptr;
};

} // namespace vexlite
