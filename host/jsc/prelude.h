// Prelude: the engine's own script in a page, and its functions that the engine calls.
#pragma once

#include "host/jsc/api.h"
#include "host/jsc/methods.h"

#include <vector>

namespace engine::jsc {

/// The content of prelude.js.
extern const char* const preludeSource;

/// The parts of a thrown value.
struct ErrorFacts {
    QString text;
    QString stack;
    int code = 0;
    bool hasCode = false;
    QString report {};
};

/// The functions that prelude.js returns, as roots. [GUI thread]
class Prelude {
public:
    /// Runs prelude.js; `native` is the object of functions that it calls. Aborts when that fails, since the
    /// script is part of the program.
    void load(JSGlobalContextRef ctx, JSObjectRef native);
    /// Adds built-in prototypes to those that languageKind() knows: an array of names, each followed by its prototype,
    /// which must last as long as the page.
    void addKinds(JSObjectRef list);
    /// Releases the roots. Nothing may be called afterwards.
    void unload();

    JSObjectRef nativePrototype = nullptr;
    JSObjectRef signalArray = nullptr;
    Signals* signals = nullptr; ///< the memory of that array
    JSObjectRef keys = nullptr; ///< returns an array with an object's keys, and sets Signals::keyCount
    JSObjectRef objectPrototype = nullptr;
    JSObjectRef settle = nullptr;
    JSObjectRef settleKept = nullptr;
    JSObjectRef run = nullptr;
    JSObjectRef fail = nullptr;
    JSObjectRef failKept = nullptr;
    JSObjectRef propertyNames = nullptr;
    JSObjectRef afterThis = nullptr;
    JSObjectRef makeProcess = nullptr;
    JSObjectRef noteRefusal = nullptr;
    JSObjectRef noteSource = nullptr;
    JSObjectRef noteInput = nullptr;
    JSObjectRef setColors = nullptr;
    JSObjectRef exitCode = nullptr; ///< what the page has set as process.exitCode, or 0; -1: a wrong one
    JSObjectRef makeRoot = nullptr;
    JSObjectRef bindRoot = nullptr;
    JSObjectRef makeClass = nullptr;
    JSObjectRef addGetter = nullptr;
    JSObjectRef keepValue = nullptr;
    JSObjectRef spread = nullptr;
    JSObjectRef bare = nullptr;
    JSObjectRef bytesOf = nullptr;
    JSObjectRef copyBytes = nullptr;

    /// Calls one of the functions. Null, with `exception` set, when it throws, which happens only when stack
    /// or memory is short.
    template <typename... Values>
    JSValueRef call(JSObjectRef function, JSValueRef* exception, Values... values) const
    {
        const JSValueRef arguments[sizeof...(values) + 1] = { values..., nullptr };
        return JSObjectCallAsFunction(m_ctx, function, nullptr, sizeof...(values), arguments, exception);
    }

    /// Makes the Error with "success" false, `code` and `msg`. Never null.
    JSValueRef makeError(int code, const QString& msg) const;
    /// Makes the Error for a script object with these three properties.
    JSValueRef errorFromObject(JSValueRef failure) const;
    JSValueRef makeTypeError(const QString& message) const;
    JSValueRef makeRangeError(const QString& message) const;
    /// Reads a thrown value; `where` is what has thrown it, such as "in a timer".
    ErrorFacts describe(JSValueRef error, const QString& where) const;

    /// The name of the built-in class ("Map") with this prototype; null for every other object.
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
