// KJsRequest: the base of an answer that comes later.
//
//     Reply KFileMd5Request::start(Call& call, const QString& path)
//     {
//         auto request = std::make_unique<KFileMd5Request>(path);
//         ...                                            // begin the work, or refuse
//         return promised(call, std::move(request));     // the answer is the promise
//     }
//
// and, when the work is done, one of the two finish operations.
#pragma once

#include "framework/promise.h"

#include <QObject>
#include <functional>

/// A request owns itself from promised() until it has finished; one that is under way when the library is
/// unloaded ends with it, and its promise is rejected. [GUI thread]
class KJsRequest : public QObject {
    Q_OBJECT

protected:
    KJsRequest() = default;

    /// Makes the promise, answers the call with it and leaves the request to itself. Without promises the
    /// request ends here, and the answer is the failure 3 `withoutPromises`.
    static Reply promised(
        Call& call, std::unique_ptr<KJsRequest> request, const char* withoutPromises = PromiseServiceNull);

    /// Whether a page still waits for the answer. Ask between steps, and finish early when none does.
    bool isAwaited() const { return m_promise.isAwaited(); }

    // Settles the promise, or as soon as it has been made, and deletes the request later. What comes after
    // the first of them does nothing.
    void finish(const QVariant& value);
    void finishRejected(const QString& message);

private:
    void settle(std::function<void()> action);

    KPendingPromise m_promise;
    std::function<void()> m_early; ///< for a promise that has not been made
    bool m_hasFinished = false;
    bool m_isPromised = false;
};
