// ScriptPage: the interface of a page to the JS core, implemented by every engine.
#pragma once

#include "vexlite/jscore.h"

namespace vexlite {

/// Called on the GUI thread, between Core::openPage and Core::closePage only.
class ScriptPage {
public:
    virtual ~ScriptPage() = default;
    /// The page's origin, "nova://app"; empty for one without.
    virtual QString origin() const { return {}; }
    /// Which line of script calls, "page.js:5:3", while it does; empty where the engine can not say.
    virtual QString callingPlace() { return {}; }
    /// Makes a pending script promise, stored as `promise` until it is settled or the page closes. False when
    /// the page can not make one.
    virtual bool createPromise(std::int64_t promise) = 0;
    /// Settles the promise and drops its resolve and reject functions; script may still hold the promise. The
    /// `value` of a rejection is an object with "success", "code" and "msg"; script gets an Error with these.
    virtual void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) = 0;
    /// No native value holds the promise any more, so no result can contain it. A pending one can still be
    /// settled.
    virtual void releasePromise(std::int64_t promise) { static_cast<void>(promise); }
};

} // namespace vexlite
