// Promises: the page's promises that native code made and has not settled.
#pragma once

#include "host/engine/pending.h"
#include "host/jsc/api.h"
#include "host/jsc/members.h"
#include "vexlite/jscore.h"

#include <unordered_map>

namespace engine::jsc {

class PageState;

/// [GUI thread] All calls but clear() need an Entry.
class Promises {
public:
    explicit Promises(PageState& page)
        : m_page(page)
    {
    }

    bool create(std::int64_t id);
    /// Settles the promise and drops its resolve and reject functions. It can be found until release(),
    /// because the call that settles it may also return it.
    void settle(std::int64_t id, JSPromiseState state, const KJSVariant& value);
    /// No result can contain the promise any more.
    void release(std::int64_t id);
    /// The promise, or null when it was released.
    JSObjectRef find(std::int64_t id) const;
    bool anyPending() const;
    void addPending(PendingList& list) const;
    /// Drops all, without settling them.
    void clear();

private:
    /// The promise and its two functions; null once released.
    struct Record {
        JSObjectRef promise = nullptr;
        JSObjectRef resolve = nullptr;
        JSObjectRef reject = nullptr;
        QString member {}; ///< that has made it
        Pending::Clock::time_point since = Pending::Clock::now();
    };
    void unprotect(JSObjectRef& object);

    PageState& m_page;
    std::unordered_map<std::int64_t, Record> m_records;
};

} // namespace engine::jsc
