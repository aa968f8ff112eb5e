// The rival of the engine's members: callbacks of the same engine with nothing between them and script.
#pragma once

#include <JavaScriptCore/JavaScript.h>
#include <QString>

namespace bench {

/// A context of its own with an object of two bare callbacks: "empty" answers undefined, "enveloped" answers
/// {success: true, data: n} made by a script function that is kept for it.
class BareScript {
public:
    BareScript();
    ~BareScript();
    BareScript(const BareScript&) = delete;
    BareScript& operator=(const BareScript&) = delete;

    /// Adds a callback to the object, in place of one of that name.
    void add(const char* name, JSObjectCallAsFunctionCallback callback);
    /// {success, data}, made by the kept script function.
    JSValueRef makeEnvelope(bool success, int data, JSValueRef* exception) const;

    /// The value of an expression that must be a function.
    JSObjectRef function(const QString& source);
    /// Calls it with the object and `count`. A failing script ends the program.
    void call(JSObjectRef function, int count);

private:
    JSGlobalContextRef m_context;
    JSObjectRef m_object;
    JSObjectRef m_envelope;
};

} // namespace bench
