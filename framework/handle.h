// Handle<T>: an extension object that a member hands out. T is announced in the member's table with
// handingOut<T>().
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

/// A new object of the class with that script name, made by the JS core for a page; null when it makes none.
KRef<IJSExtentionObject> createObject(
    const JSContextEnv& page, const char16_t* scriptName, IJSONValue* options);

/// A new T, initialised with `options`. Fails with `failure` when the JS core makes none.
template <typename T, typename Options>
Answer<Handle<T>> handOutNew(
    const JSContextEnv& page, const Options& options, const Failure& failure = EmptyHandle)
{
    KRef<IJSExtentionObject> object = createObject(page, T::ScriptName, toObject(options).get());
    if (!object)
        return failure;
    return Handle<T> { std::move(object) };
}

/// The T in `kept`, which is made the first time.
template <typename T> Answer<Handle<T>> handOutKept(const JSContextEnv& page, KRef<IJSExtentionObject>& kept)
{
    if (!kept)
        kept = createObject(page, T::ScriptName, nullptr);
    if (!kept)
        return EmptyHandle;
    kept->AddRef();
    return Handle<T> { KRef<IJSExtentionObject>(kept.get()) };
}

} // namespace jsapi
