// Prelude: the engine's own script in a page, and the functions of it that the engine calls.
#pragma once

#include "host/jsc/api.h"
#include "host/jsc/methods.h"

#include <vector>

namespace engine::jsc {

/// prelude.js.
extern const char* const preludeSource;

/// What a thrown value says.
struct ErrorFacts {
    QString text;
    QString stack;
    int code = 0;
    bool hasCode = false;
};

/// The functions that prelude.js answers with, kept as roots. [GUI thread]
class Prelude {
public:
    /// Runs prelude.js; `native` is the object of functions that it calls. Ends the process when that fails:
    /// the script is part of the program.
    void load(JSGlobalContextRef ctx, JSObjectRef native);
    /// Gives the roots back. Nothing may be called afterwards.
    void unload();

    JSObjectRef nativePrototype = nullptr;
    JSObjectRef signalArray = nullptr;
    Signals* signals = nullptr; ///< what lies behind that array
    JSObjectRef keys = nullptr; ///< answers an array of an object's keys, and Signals::keyCount
    JSObjectRef objectPrototype = nullptr;
    JSObjectRef settle = nullptr;
    JSObjectRef settleWith = nullptr;
    JSObjectRef run = nullptr;
    JSObjectRef fail = nullptr;
    JSObjectRef propertyNames = nullptr;
    JSObjectRef afterThis = nullptr;
    JSObjectRef makeProcess = nullptr;
    JSObjectRef makeRoot = nullptr;
    JSObjectRef bindRoot = nullptr;
    JSObjectRef makeClass = nullptr;
    JSObjectRef addGetter = nullptr;
    JSObjectRef spread = nullptr;
    JSObjectRef bare = nullptr;

    /// Calls one of the functions; null with `exception` set when it throws, which only a lack of stack or
    /// memory makes it do.
    template <typename... Values>
    JSValueRef call(JSObjectRef function, JSValueRef* exception, Values... values) const
    {
        const JSValueRef arguments[sizeof...(values) + 1] = { values..., nullptr };
        return JSObjectCallAsFunction(m_ctx, function, nullptr, sizeof...(values), arguments, exception);
    }

    /// The Error with "success" false, `code` and `msg`. Never null.
    JSValueRef makeError(int code, const QString& msg) const;
    /// The Error for a script object that holds these three.
    JSValueRef errorFromObject(JSValueRef failure) const;
    JSValueRef makeTypeError(const QString& message) const;
    JSValueRef makeRangeError(const QString& message) const;
    /// Reads a thrown value; whatever its getters do stays inside.
    ErrorFacts describe(JSValueRef error) const;

    /// The kind of a language object ("Map") whose prototype this is; null for every other object.
    const QString* languageKind(JSObjectRef prototype) const;

private:
    JSValueRef orUndefined(JSValueRef value, JSValueRef exception) const;

    JSGlobalContextRef m_ctx = nullptr;
    JSObjectRef m_makeError = nullptr;
    JSObjectRef m_errorFromObject = nullptr;
    JSObjectRef m_makeTypeError = nullptr;
    JSObjectRef m_makeRangeError = nullptr;
    JSObjectRef m_describeError = nullptr;
    JSObjectRef m_functions = nullptr;
    JSObjectRef m_languagePrototypes = nullptr;
    std::vector<std::pair<JSObjectRef, QString>> m_kinds; ///< ordered by address
};

} // namespace engine::jsc
