// ScriptPage: what the JS core asks of a page, whichever engine runs it.
#pragma once

#include "vexlite/jscore.h"

namespace vexlite {

/// Implemented by every engine, called on the GUI thread between Core::openPage and Core::closePage only.
class ScriptPage {
public:
    virtual ~ScriptPage() = default;
    /// Makes a pending script promise, kept under `promise` until it is settled or the page goes. False when
    /// the page can make none any more.
    virtual bool createPromise(std::int64_t promise) = 0;
    /// Settles it and forgets the settling side; script may still hold the promise itself. A rejection's
    /// `value` is an object with "success", "code" and "msg", which script sees as an Error carrying the
    /// three.
    virtual void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) = 0;
    /// No native value holds the promise any more: it comes up in no result from now on. Its settling side,
    /// where it is still pending, stays.
    virtual void releasePromise(std::int64_t promise) { static_cast<void>(promise); }
};

} // namespace vexlite
