// What the members of a view take, and the rows of its table that need no handler of their own.
#pragma once

#include "webui/js_api_webview.h"

namespace jsapi {

template <>
struct Argument<WebWidget> : ResourceArgument<WebWidget, &KJsApiWebview::findWidget, NoWebWidget> {
};
template <> struct Argument<Shell> : ResourceArgument<Shell, &KJsApiWebview::findShell, NoShell> {
};
template <>
struct Argument<EventSource<WebWidget>>
    : ResourceArgument<EventSource<WebWidget>, &KJsApiWebview::findWidgetEvents, EmptyHandle, NoWebWidget> {
};
template <>
struct Argument<EventSource<Shell>>
    : ResourceArgument<EventSource<Shell>, &KJsApiWebview::findShellEvents, EmptyHandle, NoShell> {
};

namespace viewmembers {

template <typename Function> struct FunctionOf;
template <typename T, typename Return, typename... Declared> struct FunctionOf<Return (T::*)(Declared...)> {
    using Target = std::conditional_t<std::is_same_v<T, QWidget>, Shell, WebWidget>;
    using Result = Return;
};
template <typename T, typename Return>
struct FunctionOf<Return (T::*)() const> : FunctionOf<Return (T::*)()> {
};

/// The handler that passes what script gives on to one function of the shell or the web widget. `Given` are the types that
/// script's arguments are read as.
template <auto Function, typename... Given>
Answer<typename FunctionOf<decltype(Function)>::Result> forward(
    const typename FunctionOf<decltype(Function)>::Target& part, const Given&... given)
{
    if constexpr (std::is_void_v<typename FunctionOf<decltype(Function)>::Result>) {
        (part.get()->*Function)(given...);
        return {};
    } else {
        return (part.get()->*Function)(given...);
    }
}

/// A row of the table.
template <auto Handler>
MemberDescriptor row(const char16_t* name, std::initializer_list<Parameter> parameters, const char* doc,
    FailureList failures = {})
{
    return member<Handler, KJsApiWebview>(name, Category::Usual, Type::JsValue, parameters, doc, failures);
}

/// The row of a member whose handler is forward().
template <auto Function, typename... Given>
MemberDescriptor forwards(const char16_t* name, std::initializer_list<Parameter> parameters, const char* doc)
{
    return row<&forward<Function, Given...>>(name, parameters, doc);
}

template <const auto& Listened, typename Target>
Answer<void> addViewListener(const EventSource<Target>& source, const JSContextEnv& page,
    const Listener<PayloadOf<Listened>>& listener)
{
    const KResult status = source.handle->hub().Add(heapString(Listened.name), page, listener.callback);
    if (status == KR_OK)
        source.handle->connectTo(*source, Listened.name);
    return reportListenerChange(status);
}

template <const auto& Listened, typename Target>
Answer<void> removeViewListener(const EventSource<Target>& source, const JSContextEnv& page,
    const Listener<PayloadOf<Listened>>& listener)
{
    if (isNullOrUndefined(listener.callback.raw()))
        return WrongParameters;
    return reportListenerChange(
        source.handle->hub().Remove(heapString(Listened.name), page, listener.callback));
}

/// The row of the two members that add and remove a listener of one event.
template <typename Target, const auto& Listened>
MemberDescriptor listenersOf(const char16_t* add, const char16_t* remove)
{
    constexpr auto Remove = &removeViewListener<Listened, Target>;
    MemberDescriptor pair = row<&addViewListener<Listened, Target>>(
        add, { { Type::Object, "callback" } }, "", { &WrongParameters });
    pair.counterpart = remove;
    pair.counterpartInvoke = reinterpret_cast<JSMemberInvoke>(&detail::Thunk<Remove, KJsApiWebview>::method);
    pair.documentation.template describeListenersWhen<Remove>(Listened.doc);
    return pair;
}

} // namespace viewmembers

} // namespace jsapi
