// A pending promise that is settled once.
#pragma once

#include "vexlite/jscore.h"

#include <QVariantMap>

/// A promise that a request keeps until it has a result. It is settled at most once; one that is
/// destroyed pending is rejected, so that no page waits for ever. [GUI thread]
class KPendingPromise {
public:
    KPendingPromise() = default;
    KPendingPromise(const KPendingPromise&) = delete;
    KPendingPromise& operator=(const KPendingPromise&) = delete;
    ~KPendingPromise();

    /// Makes the promise of a call and leaves it in `promise`. False when promises can not be made or
    /// settled, or the page has gone.
    bool create(const JSContextEnv& context, KJSVariant& promise);
    /// Settles it; a settled one stays as it is. `values` with the one key "data" resolves with that value
    /// itself.
    void resolve(const QVariantMap& values) { settle(true, {}, values); }
    void reject(const QString& message) { settle(false, message, {}); }

private:
    void settle(bool success, const QString& message, const QVariantMap& values);

    std::int64_t m_id = 0;
    JSContextEnv m_context {};
};
