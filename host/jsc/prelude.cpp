#include "host/jsc/prelude.h"

#include <algorithm>

namespace engine::jsc {

namespace {

// Frees the memory when the array was collected.
JSObjectRef makeSignalArray(JSContextRef ctx, Signals* memory)
{
    return JSObjectMakeTypedArrayWithBytesNoCopy(
        ctx, kJSTypedArrayTypeInt32Array, memory, sizeof(Signals),
        [](void* bytes, void*) { delete static_cast<Signals*>(bytes); }, nullptr, nullptr);
}

} // namespace

void Prelude::load(JSGlobalContextRef ctx, JSObjectRef native)
{
    m_ctx = ctx;
    JSValueRef exception = nullptr;
    const JSValueRef maker =
        JSEvaluateScript(ctx, Text(preludeSource), nullptr, Text("nova:prelude"), 1, &exception);
    signals = new Signals;
    const JSValueRef arguments[] = { native, makeSignalArray(ctx, signals) };
    const JSValueRef made = maker
        ? JSObjectCallAsFunction(ctx, asObject(maker), nullptr, std::size(arguments), arguments, &exception)
        : nullptr;
    if (!made) {
        const Text text = Text::adopt(JSValueToStringCopy(ctx, exception, nullptr));
        qFatal("the page prelude does not run: %s", qUtf8Printable(text.toQString()));
    }
    m_functions = asObject(made);
    JSValueProtect(ctx, m_functions);

    // The object of functions references them all.
    const auto take = [&](const char* name) {
        return asObject(JSObjectGetProperty(ctx, m_functions, Text(name), nullptr));
    };
    nativePrototype = take("nativePrototype");
    signalArray = take("signalArray");
    keys = take("keys");
    objectPrototype = take("objectPrototype");
    settle = take("settle");
    settleKept = take("settleKept");
    run = take("run");
    fail = take("fail");
    failKept = take("failKept");
    propertyNames = take("propertyNames");
    afterThis = take("afterThis");
    makeProcess = take("makeProcess");
    noteRefusal = take("noteRefusal");
    noteSource = take("noteSource");
    noteInput = take("noteInput");
    setColors = take("setColors");
    exitCode = take("exitCode");
    makeRoot = take("makeRoot");
    bindRoot = take("bindRoot");
    makeClass = take("makeClass");
    addGetter = take("addGetter");
    keepValue = take("keepValue");
    spread = take("spread");
    bare = take("bare");
    bytesOf = take("bytesOf");
    copyBytes = take("copyBytes");
    m_makeError = take("makeError");
    m_errorFromObject = take("errorFromObject");
    m_makeTypeError = take("makeTypeError");
    m_makeRangeError = take("makeRangeError");
    m_describeError = take("describeError");

    m_languagePrototypes = asObject(call(take("languagePrototypes"), nullptr));
    JSValueProtect(ctx, m_languagePrototypes);
    addKinds(m_languagePrototypes);
}

void Prelude::addKinds(JSObjectRef list)
{
    const auto count = static_cast<unsigned>(
        JSValueToNumber(m_ctx, JSObjectGetProperty(m_ctx, list, Text("length"), nullptr), nullptr));
    m_kinds.reserve(m_kinds.size() + count / 2);
    for (unsigned i = 0; i + 1 < count; i += 2) {
        m_kinds.emplace_back(asObject(JSObjectGetPropertyAtIndex(m_ctx, list, i + 1, nullptr)),
            stringOf(m_ctx, JSObjectGetPropertyAtIndex(m_ctx, list, i, nullptr)));
    }
    std::sort(m_kinds.begin(), m_kinds.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
}

void Prelude::unload()
{
    JSValueUnprotect(m_ctx, m_functions);
    JSValueUnprotect(m_ctx, m_languagePrototypes);
    *this = {};
}

JSValueRef Prelude::orUndefined(JSValueRef value, JSValueRef exception) const
{
    if (value)
        return value;
    return exception ? exception : JSValueMakeUndefined(m_ctx);
}

JSValueRef Prelude::makeError(int code, const QString& msg) const
{
    JSValueRef exception = nullptr;
    const JSValueRef error = call(m_makeError, &exception, JSValueMakeBoolean(m_ctx, false),
        JSValueMakeNumber(m_ctx, code), makeString(m_ctx, msg));
    return orUndefined(error, exception);
}

JSValueRef Prelude::errorFromObject(JSValueRef failure) const
{
    JSValueRef exception = nullptr;
    const JSValueRef error = call(m_errorFromObject, &exception, failure);
    return orUndefined(error, exception);
}

JSValueRef Prelude::makeTypeError(const QString& message) const
{
    JSValueRef exception = nullptr;
    const JSValueRef error = call(m_makeTypeError, &exception, makeString(m_ctx, message));
    return orUndefined(error, exception);
}

JSValueRef Prelude::makeRangeError(const QString& message) const
{
    JSValueRef exception = nullptr;
    const JSValueRef error = call(m_makeRangeError, &exception, makeString(m_ctx, message));
    return orUndefined(error, exception);
}

ErrorFacts Prelude::describe(JSValueRef error, const QString& where) const
{
    const JSValueRef facts = call(m_describeError, nullptr, error, makeString(m_ctx, where));
    if (!facts)
        return { QStringLiteral("an error that can not be shown"), {}, 0, false };
    const auto at = [&](unsigned index) {
        return JSObjectGetPropertyAtIndex(m_ctx, asObject(facts), index, nullptr);
    };
    ErrorFacts out;
    out.text = stringOf(m_ctx, at(0));
    out.stack = stringOf(m_ctx, at(1));
    const JSValueRef code = at(2);
    out.hasCode = JSValueIsNumber(m_ctx, code);
    if (out.hasCode)
        out.code = static_cast<int>(JSValueToInt32(m_ctx, code, nullptr));
    out.report = stringOf(m_ctx, at(3));
    return out;
}

const QString* Prelude::languageKind(JSObjectRef prototype) const
{
    const auto found = std::lower_bound(m_kinds.begin(), m_kinds.end(), prototype,
        [](const auto& entry, JSObjectRef wanted) { return entry.first < wanted; });
    return found != m_kinds.end() && found->first == prototype ? &found->second : nullptr;
}

} // namespace engine::jsc
