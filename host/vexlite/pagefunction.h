// PageFunction: what the core must know of a script function besides how it is called.
#pragma once

#include "vexlite/jsonvalue.h"

#include <atomic>

namespace vexlite {

/// Every IJSFunction of an engine is one. A new one has one reference, for its maker. [GUI thread]
class PageFunction : public IJSFunction {
public:
    PageFunction() = default;
    PageFunction(const PageFunction&) = delete;
    PageFunction& operator=(const PageFunction&) = delete;

    /// Performs the call and reports it to observers.
    KResult Call(const JSApiArguments& arguments, KJSVariant* result) final;
    KResult QueryInterface(const KIID& iid, void** out) final;
    /// [any thread]
    std::uint32_t AddRef() final { return m_references.fetch_add(1, std::memory_order_relaxed) + 1; }
    /// [any thread] On other threads than the GUI thread the object is destroyed from the event loop.
    std::uint32_t Release() final;

    /// What distinguishes functions: two wrappers return the same identity exactly when they wrap the same
    /// function of the same page. It stays as it is, and names no other function of that page, while either
    /// of them lives.
    virtual std::uintptr_t Identity() const = 0;
    /// The page it belongs to.
    virtual JSContextEnv Context() const = 0;
    /// What IJSFunction::Call says, without a report to observers. For a listener `event` is the name by which the page's host
    /// reports what it throws; null for any other function.
    virtual KResult perform(const JSApiArguments& arguments, KJSVariant* result, const QString& event) = 0;
    /// A number for people and for records: that of all wrappers of the same function, as long as one of them lives.
    std::int64_t number();

    /// It is a listener of this event from now on.
    void listenTo(const QString& event) { m_event = event; }
    /// Empty for one that is no listener.
    const QString& event() const { return m_event; }

protected:
    /// Called on the GUI thread, or after the application has ended.
    virtual ~PageFunction();

private:
    std::int64_t m_number = 0; ///< 0 until it is asked for
    std::atomic<std::uint32_t> m_references { 1 };
    QString m_event;
};

} // namespace vexlite
