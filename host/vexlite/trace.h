// CallTrace: the trace hook, which reports to observers and hides members.
#pragma once

#include "host/vexlite/classnames.h"
#include "host/vexlite/observer.h"

#include <functional>
#include <vector>

namespace vexlite {

class CallTrace final : public IJSTraceHook {
public:
    /// Makes the call, with the value that recordEnd() will get.
    using Invoke = std::function<KResult(std::int64_t extra)>;

    CallTrace() = default;
    ~CallTrace();
    CallTrace(const CallTrace&) = delete;
    CallTrace& operator=(const CallTrace&) = delete;
    /// The trace of the process while it has observers; else null.
    static CallTrace* active() { return s_active; }

    void add(Observer* observer);
    void remove(Observer* observer);
    void setDenyMask(std::uint32_t mask) { m_denyMask = mask; }
    bool isTracing() const { return !m_observers.empty(); }
    bool isNeeded() const { return isTracing() || m_denyMask; }

    ClassNames& names() { return m_names; }
    /// The facts of a call that is about to be made, without its number.
    CallFacts describe(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id,
        JSAccess access, const JSApiArguments& arguments) const;
    /// Makes a call and reports its beginning and end.
    KResult trace(
        CallFacts call, const KJSVariant& result, const KJSVariant& exception, const Invoke& invoke);
    struct Caller {
        int call = 0; ///< 0 when no call is observed
        QString object;
        QString member;
    };
    /// Whose call is in progress.
    Caller caller() const;
    /// Reports that the promise which `caller` made is settled: at once, or when its call has ended.
    void reportSettled(const JSContextEnv& context, std::int64_t promise, const Caller& caller,
        JSPromiseState state, const KJSVariant& value);
    void reportPage(const JSContextEnv& context, const QString& origin);
    void reportStep(const QString& step);
    /// Reports the call of a function of a page, made by `call`.
    KResult traceFunction(const JSContextEnv& context, std::int64_t function, const JSApiArguments& arguments,
        const std::function<KResult()>& call);

    /// One event of a hub: reported for each page when its first listener is about to be called, and when all have been.
    class Emission {
    public:
        Emission(std::int64_t typeId, IJSExtentionObject* object, const QString& event,
            const JSApiArguments& arguments)
            : m_typeId(typeId)
            , m_object(object)
            , m_event(event)
            , m_arguments(arguments)
        {
        }
        ~Emission();
        Emission(const Emission&) = delete;
        Emission& operator=(const Emission&) = delete;
        void reach(const JSContextEnv& context)
        {
            if (m_isTraced) [[unlikely]]
                report(context);
        }

    private:
        void report(const JSContextEnv& context);

        bool m_isTraced = s_active;
        std::int64_t m_typeId;
        IJSExtentionObject* m_object; ///< may go with the first listener, as may the event's name
        const QString& m_event;
        const JSApiArguments& m_arguments;
        std::vector<EventFacts> m_reported;
    };

    /// Records the end of the innermost call, if `extra` identifies it; does nothing otherwise.
    void recordEnd(const JSContextEnv& context, std::int64_t extra);

    bool FilterTable(const QString& objectName, const JSContextEnv& context, const JSMemberTable& table,
        JSMemberTable& replacement) override;
    void CallNotice(
        const QString& objectName, const JSContextEnv& context, const JSMemberEntry* member) override;

private:
    using Clock = std::chrono::steady_clock;
    /// Keeps the value.
    struct Settlement {
        explicit Settlement(const SettledPromise& given)
            : value(given.value)
            , promise { given.id, given.context, given.object, given.member, given.time, given.state, value }
        {
        }
        KJSVariant value;
        SettledPromise promise;
    };
    struct ActiveCall {
        ActiveCall* outer;
        CallFacts& facts;
        TraceTime end {}; ///< the epoch until recordEnd()
        bool isNoticed = false;
        std::vector<std::unique_ptr<Settlement>> settled {}; ///< promises of this call
    };
    int innermost() const { return m_innermost ? m_innermost->facts.id : 0; }
    template <typename Report> void each(Report report);

    inline static CallTrace* s_active = nullptr;

    std::vector<Observer*> m_observers;
    std::uint32_t m_denyMask = 0;
    ActiveCall* m_innermost = nullptr;
    int m_lastCall = 0;
    ClassNames m_names;
};

} // namespace vexlite
