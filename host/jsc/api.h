// The JavaScriptCore C API, and wrappers for its strings and its lock.
#pragma once

#include <JavaScriptCore/JavaScript.h>
#include <QString>

// Exported by the library, but declared only in private headers that are not installed.
extern "C" {
using JSWeakRef = const struct OpaqueJSWeak*;
/// A weak reference; JSWeakGetObject returns null once its object was collected.
JSWeakRef JSWeakCreate(JSContextGroupRef group, JSObjectRef object);
void JSWeakRelease(JSContextGroupRef group, JSWeakRef weak);
JSObjectRef JSWeakGetObject(JSWeakRef weak);
/// Calls `finalizer` at the end of every collection, in which the API must not be called.
using JSHeapFinalizer = void (*)(JSContextGroupRef group, void* userData);
void JSContextGroupAddHeapFinalizer(JSContextGroupRef group, JSHeapFinalizer finalizer, void* userData);
void JSContextGroupRemoveHeapFinalizer(JSContextGroupRef group, JSHeapFinalizer finalizer, void* userData);
/// The target of a proxy, without calling its traps; null for other objects and revoked proxies.
JSObjectRef JSObjectGetProxyTarget(JSObjectRef object);
/// `function` gets the promise and its reason. It is a root as long as the context's group lives.
void JSGlobalContextSetUnhandledRejectionCallback(
    JSGlobalContextRef ctx, JSObjectRef function, JSValueRef* exception);
void JSSynchronousGarbageCollectForDebugging(JSContextRef ctx);
/// Calls `callback` whenever script has used so many seconds of the processor since it began or since the last call; true
/// ends the script, which can not catch that.
using JSShouldTerminateCallback = bool (*)(JSContextRef ctx, void* context);
void JSContextGroupSetExecutionTimeLimit(
    JSContextGroupRef group, double seconds, JSShouldTerminateCallback callback, void* context);
void JSContextGroupClearExecutionTimeLimit(JSContextGroupRef group);
/// Microtasks run when the outermost lock is released, and not before.
void JSLock(JSContextRef ctx);
void JSUnlock(JSContextRef ctx);
/// Runs the microtasks, as releasing the lock does. A member function of the group; null in a library that does not export it.
[[gnu::weak]] void JSRunMicrotasks(JSContextGroupRef group) __asm__("_ZN3JSC2VM15drainMicrotasksEv");
}

namespace engine::jsc {

/// Owns one JavaScriptCore string.
class Text {
public:
    explicit Text(const char* ascii)
        : m_string(JSStringCreateWithUTF8CString(ascii))
    {
    }
    explicit Text(const QString& text)
        : m_string(JSStringCreateWithCharacters(
            reinterpret_cast<const JSChar*>(text.utf16()), static_cast<std::size_t>(text.size())))
    {
    }
    /// Takes ownership of one reference.
    static Text adopt(JSStringRef string) { return Text(string, 0); }
    Text(Text&& other) noexcept
        : m_string(std::exchange(other.m_string, nullptr))
    {
    }
    Text& operator=(Text&&) = delete;
    ~Text()
    {
        if (m_string)
            JSStringRelease(m_string);
    }

    operator JSStringRef() const { return m_string; }
    std::size_t size() const { return m_string ? JSStringGetLength(m_string) : 0; }
    const char16_t* units() const
    {
        return reinterpret_cast<const char16_t*>(JSStringGetCharactersPtr(m_string));
    }
    QString toQString() const
    {
        return m_string ? QString(reinterpret_cast<const QChar*>(JSStringGetCharactersPtr(m_string)),
                   static_cast<int>(JSStringGetLength(m_string)))
                        : QString();
    }

private:
    Text(JSStringRef string, int)
        : m_string(string)
    {
    }
    JSStringRef m_string;
};

/// Holds the lock during many calls of the API. Each would take it again otherwise, which is most of the cost
/// of a small call in a native function.
class Lock {
public:
    explicit Lock(JSContextRef ctx)
        : m_ctx(ctx)
    {
        JSLock(ctx);
    }
    ~Lock() { JSUnlock(m_ctx); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    JSContextRef m_ctx;
};

/// Makes a string value.
inline JSValueRef makeString(JSContextRef ctx, const QString& text)
{
    return JSValueMakeString(ctx, Text(text));
}

/// The string of a string value; empty for other values, and when memory is short.
inline QString stringOf(JSContextRef ctx, JSValueRef value)
{
    if (!value || !JSValueIsString(ctx, value))
        return {};
    return Text::adopt(JSValueToStringCopy(ctx, value, nullptr)).toQString();
}

/// The object in a value that is known to be one.
inline JSObjectRef asObject(JSValueRef value)
{
    return const_cast<JSObjectRef>(value);
}

} // namespace engine::jsc
