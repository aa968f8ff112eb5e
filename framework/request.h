// KJsRequestFor<T>: the base of work that settles a promise of T when it is done.
//
//     Answer<Promise<QString>> KFileMd5Request::start(const JSContextEnv& page, const QString& path)
//     {
//         auto request = std::make_unique<KFileMd5Request>(path);
//         ...                                           // begin the work, or refuse
//         return promise(page, std::move(request));
//     }
//
// and, when the work is done, resolve or reject.
#pragma once

#include "framework/answer.h"
#include "framework/promise.h"

#include <QObject>
#include <functional>

/// A request owns itself from promise() until it has finished; one that is under way when the library is
/// unloaded ends with it, and its promise is rejected. [GUI thread]
class KJsRequest : public QObject {
    Q_OBJECT

protected:
    KJsRequest() = default;

    /// Makes a page's promise of a T, and leaves the request to itself. Without promises the request ends
    /// here with the failure `withoutPromises`.
    template <typename T>
    static jsapi::Answer<jsapi::Promise<T>> promise(
        const JSContextEnv& page, std::unique_ptr<KJsRequest> request, const jsapi::Failure& withoutPromises)
    {
        KJSVariant promise = createPromise(page, std::move(request));
        if (promise.isEmpty())
            return withoutPromises;
        return jsapi::Promise<T> { std::move(promise) };
    }

    // Settles the promise, or as soon as it has been made, and deletes the request later. What comes after
    // the first of them does nothing.
    void resolve(const QVariant& value);
    /// The failure must be one that rejects.
    void reject(const jsapi::Refusal& refusal);

private:
    static KJSVariant createPromise(const JSContextEnv& page, std::unique_ptr<KJsRequest> request);
    void settle(std::function<void()> action);

    KPendingPromise m_promise;
    std::function<void()> m_early; ///< for a promise that has not been made
    bool m_hasFinished = false;
    bool m_isPromised = false;
};

/// A request whose promise resolves with a T.
template <typename T> class KJsRequestFor : public KJsRequest {
protected:
    static jsapi::Answer<jsapi::Promise<T>> promise(const JSContextEnv& page,
        std::unique_ptr<KJsRequest> request,
        const jsapi::Failure& withoutPromises = jsapi::PromiseServiceNull)
    {
        return KJsRequest::promise<T>(page, std::move(request), withoutPromises);
    }
    void resolve(const T& value) { KJsRequest::resolve(jsapi::toVariant(value)); }
};
