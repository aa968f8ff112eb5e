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

    /// The value of an expression that must be a function.
    JSObjectRef function(const QString& source);
    /// Calls it with the object and `count`. A failing script ends the program.
    void call(JSObjectRef function, int count);

private:
    JSGlobalContextRef m_context;
    JSObjectRef m_object;
};

} // namespace bench
