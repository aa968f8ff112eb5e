// Answer<T>: what a handler returns, a value or the failure that happened instead. How a value becomes one of
// script's is decided by its type:
//
//     bool, int, double, QString, lists, maps      the "data" of a success
//     a struct with fields                         the same, an object
//     void                                         a success whose "data" is undefined
//     Promise<T>                                   a promise of T, made by a request (framework/request.h)
//     Handle<T>                                    another extension object (framework/handle.h)
//     Plain<T>                                     the value itself, without an envelope
//     QVariant                                     only where it really may be anything
#pragma once

#include "framework/call.h"
#include "framework/structs.h"

#include <concepts>
#include <variant>

namespace jsapi {

/// A handler's result. `return value;` or `return SomeFailure;`. The constraint on the value
/// refuses narrowing.
template <typename T> class [[nodiscard]] Answer {
public:
    template <typename Value>
    requires std::convertible_to<Value, T> && requires(Value&& value) { T { std::forward<Value>(value) }; }
    Answer(Value&& value) // NOLINT(*-explicit-*,*-forwarding-*)
        : m_outcome(std::in_place_index<0>, std::forward<Value>(value))
    {
    }
    Answer(const Failure& failure) // NOLINT(*-explicit-*)
        : m_outcome(std::in_place_index<1>, failure)
    {
    }
    Answer(Refusal refusal) // NOLINT(*-explicit-*)
        : m_outcome(std::in_place_index<1>, std::move(refusal))
    {
    }

    bool isRefused() const noexcept { return m_outcome.index() == 1; }
    const Refusal& refusal() const { return *std::get_if<1>(&m_outcome); }
    T& value() { return *std::get_if<0>(&m_outcome); }

private:
    std::variant<T, Refusal> m_outcome;
};

template <> class [[nodiscard]] Answer<void> {
public:
    Answer() = default;
    Answer(const Failure& failure) // NOLINT(*-explicit-*)
        : m_refusal(failure)
    {
    }
    Answer(Refusal refusal) // NOLINT(*-explicit-*)
        : m_refusal(std::move(refusal))
    {
    }

    bool isRefused() const noexcept { return m_refusal.has_value(); }
    const Refusal& refusal() const { return *m_refusal; }

private:
    std::optional<Refusal> m_refusal;
};

/// A promise on its way to script. Made by KJsRequestFor<T> only, so it resolves with a T.
template <typename T> struct Promise {
    KJSVariant promise;
};

/// A value that script gets as it is, without an envelope.
template <typename T> struct Plain {
    T value;
};
/// What the JS core returned for the call. Success has no value at all, anything else is WrongParameters with
/// that status.
template <> struct Plain<void> {
    KResult status;
};

/// Writes a handler's result into the slots of its call. One of them for each form of answer.
template <typename T> KResult writeAnswer(Call& call, Answer<T>&& answer)
{
    return answer.isRefused() ? call.fail(answer.refusal()) : call.succeed(toScript(answer.value()));
}
KResult writeAnswer(Call& call, Answer<void>&& answer);
// The usual types, once for all members.
extern template KResult writeAnswer(Call& call, Answer<bool>&& answer);
extern template KResult writeAnswer(Call& call, Answer<QString>&& answer);
template <typename T> KResult writeAnswer(Call& call, Answer<Promise<T>>&& answer)
{
    return answer.isRefused() ? call.fail(answer.refusal())
                              : call.succeedPlain(std::move(answer.value().promise));
}
template <typename T> KResult writeAnswer(Call& call, Answer<Plain<T>>&& answer)
{
    return answer.isRefused() ? call.fail(answer.refusal())
                              : call.succeedPlain(toScript(std::move(answer.value().value)));
}
KResult writeAnswer(Call& call, Answer<Plain<void>>&& answer);

} // namespace jsapi
