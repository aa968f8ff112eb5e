// Promises: those that native code has made for the page and not yet settled.
#pragma once

#include "host/jsc/api.h"
#include "vexlite/jscore.h"

#include <unordered_map>
#include <vector>

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
    /// Settles and forgets the settling side. The promise itself is still found until the outermost call of
    /// the page returns, because the call that settles it may be the one that answers with it.
    void settle(std::int64_t id, JSPromiseState state, const KJSVariant& value);
    /// The promise, or null when there is none of this name any more.
    JSObjectRef find(std::int64_t id) const;
    void dropSettled();
    /// Forgets them all, unsettled.
    void clear();

private:
    struct Pending {
        JSObjectRef promise;
        JSObjectRef resolve;
        JSObjectRef reject;
    };
    PageState& m_page;
    std::unordered_map<std::int64_t, Pending> m_pending;
    std::vector<std::pair<std::int64_t, JSObjectRef>> m_settled;
};

} // namespace engine::jsc
