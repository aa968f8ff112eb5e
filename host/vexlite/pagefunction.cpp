#include "host/vexlite/pagefunction.h"

#include "host/vexlite/trace.h"

#include <QCoreApplication>
#include <QThread>
#include <map>

namespace vexlite {

namespace {

/// The functions that have been given a number.
struct Numbers {
    using Function = std::pair<std::int64_t, std::uintptr_t>; ///< the page's context, and the identity
    struct Entry {
        Function function;
        int wrappers = 0;
    };
    std::map<Function, std::int64_t> byFunction;
    std::map<std::int64_t, Entry> byNumber;
    std::int64_t last = 0;

    /// Never destroyed: functions may go when the process ends.
    static Numbers& instance()
    {
        static Numbers& numbers = *new Numbers;
        return numbers;
    }
};

} // namespace

std::int64_t PageFunction::number()
{
    if (m_number)
        return m_number;
    Numbers& numbers = Numbers::instance();
    const Numbers::Function function { Context().contextId, Identity() };
    const auto [known, isNew] = numbers.byFunction.try_emplace(function, numbers.last + 1);
    if (isNew)
        ++numbers.last;
    m_number = known->second;
    Numbers::Entry& entry = numbers.byNumber[m_number];
    entry.function = function;
    ++entry.wrappers;
    return m_number;
}

PageFunction::~PageFunction()
{
    if (!m_number)
        return;
    Numbers& numbers = Numbers::instance();
    const auto known = numbers.byNumber.find(m_number);
    if (--known->second.wrappers)
        return;
    numbers.byFunction.erase(known->second.function);
    numbers.byNumber.erase(known);
}

KResult PageFunction::Call(const JSApiArguments& arguments, KJSVariant* result)
{
    CallTrace* trace = CallTrace::active();
    if (!trace) [[likely]]
        return perform(arguments, result, {});
    return trace->traceFunction(
        Context(), number(), arguments, [&] { return perform(arguments, result, {}); });
}

KResult PageFunction::QueryInterface(const KIID& iid, void** out)
{
    *out = nullptr;
    if (!(iid == IID_IUnknown) && !(iid == IID_IJSFunction))
        return KR_NO_INTERFACE;
    AddRef();
    *out = static_cast<IJSFunction*>(this);
    return KR_OK;
}

std::uint32_t PageFunction::Release()
{
    const std::uint32_t left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left)
        return left;
    QCoreApplication* application = QCoreApplication::instance();
    if (!application || application->thread() == QThread::currentThread())
        delete this;
    else
        QMetaObject::invokeMethod(
            application, [this] { delete this; }, Qt::QueuedConnection);
    return 0;
}

} // namespace vexlite
