// Handle<T>: an extension object that a member hands out. The member's table ends with handingOut<T>().
#pragma once

#include "framework/answer.h"

namespace jsapi {

template <typename T> struct Handle {
    KRef<IJSExtentionObject> object;
};

template <typename T> KResult writeAnswer(Call& call, Answer<Handle<T>>&& answer)
{
    return answer.isRefused() ? call.fail(answer.refusal()) : call.handOut(answer.value().object.release());
}

/// A new T, initialised with `options`. Fails with `failure` when the JS core makes none.
template <typename T, typename Options>
Answer<Handle<T>> handOutNew(
    const JSContextEnv& page, const Options& options, const Failure& failure = EmptyHandle)
{
    KRef<IJSExtentionObject> object = T::makeFor(page, toObject(options).get());
    if (!object)
        return failure;
    return Handle<T> { std::move(object) };
}

/// The T in `kept`, which is made the first time.
template <typename T> Answer<Handle<T>> handOutKept(const JSContextEnv& page, KRef<IJSExtentionObject>& kept)
{
    if (!kept)
        kept = T::makeFor(page, nullptr);
    if (!kept)
        return EmptyHandle;
    return Handle<T> { hold(*kept) };
}

} // namespace jsapi
