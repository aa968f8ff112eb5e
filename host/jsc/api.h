// The JavaScriptCore C API as it is used here, and Text, one of its strings.
#pragma once

#include <JavaScriptCore/JavaScript.h>
#include <QString>

// Exported by the library, declared by its private headers only, which are not installed.
extern "C" {
using JSWeakRef = const struct OpaqueJSWeak*;
/// A reference that does not keep its object; JSWeakGetObject answers null from the collection that frees it
/// on.
JSWeakRef JSWeakCreate(JSContextGroupRef group, JSObjectRef object);
void JSWeakRelease(JSContextGroupRef group, JSWeakRef weak);
JSObjectRef JSWeakGetObject(JSWeakRef weak);
/// Calls `finalizer` at the end of every collection; it may not call the API.
using JSHeapFinalizer = void (*)(JSContextGroupRef group, void* userData);
void JSContextGroupAddHeapFinalizer(JSContextGroupRef group, JSHeapFinalizer finalizer, void* userData);
void JSContextGroupRemoveHeapFinalizer(JSContextGroupRef group, JSHeapFinalizer finalizer, void* userData);
/// The target of a proxy, without touching its traps; null for every other object and for a revoked proxy.
JSObjectRef JSObjectGetProxyTarget(JSObjectRef object);
/// `function` gets the promise and its reason. The context's group keeps it as a root to its end.
void JSGlobalContextSetUnhandledRejectionCallback(
    JSGlobalContextRef ctx, JSObjectRef function, JSValueRef* exception);
void JSSynchronousGarbageCollectForDebugging(JSContextRef ctx);
/// Microtasks run when the outermost lock is given back, and not before.
void JSLock(JSContextRef ctx);
void JSUnlock(JSContextRef ctx);
}

namespace engine::jsc {

/// One JavaScriptCore string, released when it goes out of scope.
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
    /// Takes over one reference.
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

/// Holds the lock across many calls of the API, each of which would take it anew: that is most of what a
/// small one costs inside a native function.
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

/// A string value of script.
inline JSValueRef makeString(JSContextRef ctx, const QString& text)
{
    return JSValueMakeString(ctx, Text(text));
}

/// The text of a value that is known to be a string; empty for another, and when memory is short.
inline QString stringOf(JSContextRef ctx, JSValueRef value)
{
    if (!value || !JSValueIsString(ctx, value))
        return {};
    return Text::adopt(JSValueToStringCopy(ctx, value, nullptr)).toQString();
}

/// The object behind a value that is known to be one.
inline JSObjectRef asObject(JSValueRef value)
{
    return const_cast<JSObjectRef>(value);
}

} // namespace engine::jsc
