// Promises: those that native code has made for the page and not yet settled.
#pragma once

#include "host/jsc/api.h"
#include "vexlite/jscore.h"

#include <unordered_map>

namespace engine::jsc {

class PageState;

/// [GUI thread] All calls but clear() from inside an Entry.
class Promises {
public:
    explicit Promises(PageState& page)
        : m_page(page)
    {
    }

    bool create(std::int64_t id);
    /// Settles and forgets the settling side. The promise itself is found until release(), because the call
    /// that settles it may be the one that answers with it.
    void settle(std::int64_t id, JSPromiseState state, const KJSVariant& value);
    /// No answer holds the promise any more.
    void release(std::int64_t id);
    /// The promise, or null when there is none of this name any more.
    JSObjectRef find(std::int64_t id) const;
    /// Forgets them all, unsettled.
    void clear();

private:
    /// The promise and its two functions; null is what has been given back.
    struct Record {
        JSObjectRef promise = nullptr;
        JSObjectRef resolve = nullptr;
        JSObjectRef reject = nullptr;
    };
    void giveBack(JSObjectRef& object);

    PageState& m_page;
    std::unordered_map<std::int64_t, Record> m_records;
};

} // namespace engine::jsc
