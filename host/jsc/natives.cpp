#include "host/jsc/natives.h"

#include "host/jsc/pagestate.h"
#include "host/jsc/webapis.h"

#include <QRandomGenerator>
#include <chrono>

namespace engine::jsc {

namespace {

using Arguments = const JSValueRef*;
using Handler = JSValueRef (*)(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef* exception);

bool truth(JSContextRef ctx, JSValueRef value)
{
    return JSValueToBoolean(ctx, value);
}

int integer(JSContextRef ctx, JSValueRef value)
{
    return static_cast<int>(JSValueToInt32(ctx, value, nullptr));
}

// Only the prelude calls these, with all arguments. They do nothing for a closed page.
template <std::size_t Count, Handler handler>
JSValueRef callback(JSContextRef ctx, JSObjectRef, JSObjectRef, std::size_t count,
    const JSValueRef arguments[], JSValueRef* exception)
{
    PageState* page = Engine::findPage(ctx);
    if (!page || !page->isLive() || count != Count)
        return JSValueMakeUndefined(ctx);
    const std::shared_ptr<PageState> keep = page->shared_from_this();
    const NativeScope scope(*page);
    return handler(*page, ctx, arguments, exception);
}

JSValueRef print(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    page.print(stringOf(ctx, arguments[0]), truth(ctx, arguments[1]));
    return JSValueMakeUndefined(ctx);
}

JSValueRef now(PageState&, JSContextRef ctx, Arguments, JSValueRef*)
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return JSValueMakeNumber(ctx, std::chrono::duration<double, std::milli>(time).count());
}

JSValueRef uncaught(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    const bool hasCode = JSValueIsNumber(ctx, arguments[2]);
    page.reportUncaught({ stringOf(ctx, arguments[0]), stringOf(ctx, arguments[1]),
        hasCode ? integer(ctx, arguments[2]) : 0, hasCode, stringOf(ctx, arguments[3]) });
    return JSValueMakeUndefined(ctx);
}

JSValueRef finish(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    Outcome outcome;
    outcome.ok = truth(ctx, arguments[1]);
    outcome.text = stringOf(ctx, arguments[2]);
    outcome.json = stringOf(ctx, arguments[3]);
    outcome.stack = stringOf(ctx, arguments[4]);
    outcome.hasCode = JSValueIsNumber(ctx, arguments[5]);
    outcome.code = outcome.hasCode ? integer(ctx, arguments[5]) : 0;
    outcome.report = stringOf(ctx, arguments[6]);
    page.finish(integer(ctx, arguments[0]), outcome);
    return JSValueMakeUndefined(ctx);
}

JSValueRef startTimer(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef* exception)
{
    const int timer = page.timers().start(asObject(arguments[0]), JSValueToNumber(ctx, arguments[1], nullptr),
        truth(ctx, arguments[2]), truth(ctx, arguments[3]) ? Timers::Owner::Script : Timers::Owner::Page);
    if (!timer)
        *exception = page.prelude().makeRangeError(QStringLiteral("too many timers"));
    return JSValueMakeNumber(ctx, timer);
}

JSValueRef clearTimer(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    page.timers().cancel(integer(ctx, arguments[0]));
    return JSValueMakeUndefined(ctx);
}

JSValueRef exitPage(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    page.exitWith(integer(ctx, arguments[0]));
    return JSValueMakeUndefined(ctx);
}

JSValueRef play(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef* exception)
{
    const QString fault = page.play(stringOf(ctx, arguments[0]));
    if (!fault.isEmpty())
        *exception = page.prelude().makeError(1, fault);
    return JSValueMakeUndefined(ctx);
}

JSValueRef isProxy(PageState&, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    // The global object has this class too.
    const bool is = JSValueIsObject(ctx, arguments[0]) && arguments[0] != JSContextGetGlobalObject(ctx)
        && JSObjectGetProxyTarget(asObject(arguments[0]));
    return JSValueMakeBoolean(ctx, is);
}

JSValueRef isNative(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    return JSValueMakeBoolean(
        ctx, JSValueIsObject(ctx, arguments[0]) && page.wrappers().isNative(asObject(arguments[0])));
}

JSValueRef makeGetter(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    return page.wrappers().makeRootGetter(stringOf(ctx, arguments[0]));
}

JSValueRef milliseconds(PageState& page, JSContextRef ctx, Arguments, JSValueRef*)
{
    return JSValueMakeNumber(ctx, page.milliseconds());
}

// Fills a Uint8Array.
JSValueRef fillRandom(PageState&, JSContextRef ctx, Arguments arguments, JSValueRef* exception)
{
    JSObjectRef array = asObject(arguments[0]);
    auto* bytes = static_cast<char*>(JSObjectGetTypedArrayBytesPtr(ctx, array, exception));
    if (!bytes)
        return JSValueMakeUndefined(ctx);
    bytes += JSObjectGetTypedArrayByteOffset(ctx, array, nullptr);
    char* const end = bytes + JSObjectGetTypedArrayByteLength(ctx, array, nullptr);
    QRandomGenerator::system()->generate(bytes, end);
    return JSValueMakeUndefined(ctx);
}

JSValueRef webApi(PageState&, JSContextRef ctx, Arguments arguments, JSValueRef* exception)
{
    return loadWebApi(ctx, stringOf(ctx, arguments[0]), exception);
}

JSValueRef addKinds(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    page.addKinds(asObject(arguments[0]));
    return JSValueMakeUndefined(ctx);
}

JSValueRef findRead(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    return makeString(ctx, page.findRead(stringOf(ctx, arguments[0])));
}

JSValueRef unknownName(PageState& page, JSContextRef ctx, Arguments arguments, JSValueRef*)
{
    vexlite::PageChecker* checker = page.core().checker();
    const QString refusal = checker
        ? checker->checkName(page.env(), stringOf(ctx, arguments[0]), stringOf(ctx, arguments[1]))
        : QString();
    return refusal.isNull() ? JSValueMakeUndefined(ctx) : makeString(ctx, refusal);
}

} // namespace

JSObjectRef makeNatives(JSGlobalContextRef ctx)
{
    JSObjectRef natives = JSObjectMake(ctx, nullptr, nullptr);
    const auto add = [&](const char* name, JSObjectCallAsFunctionCallback function) {
        const Text text(name);
        JSObjectSetProperty(ctx, natives, text, JSObjectMakeFunctionWithCallback(ctx, text, function),
            kJSPropertyAttributeNone, nullptr);
    };
    add("print", callback<2, print>);
    add("uncaught", callback<4, uncaught>);
    add("finish", callback<7, finish>);
    add("now", callback<0, now>);
    add("startTimer", callback<4, startTimer>);
    add("clearTimer", callback<1, clearTimer>);
    add("exit", callback<1, exitPage>);
    add("play", callback<1, play>);
    add("isProxy", callback<1, isProxy>);
    add("isNative", callback<1, isNative>);
    add("makeGetter", callback<1, makeGetter>);
    add("milliseconds", callback<0, milliseconds>);
    add("fillRandom", callback<1, fillRandom>);
    add("webApi", callback<1, webApi>);
    add("addKinds", callback<1, addKinds>);
    add("findRead", callback<1, findRead>);
    add("unknownName", callback<2, unknownName>);
    return natives;
}

} // namespace engine::jsc
