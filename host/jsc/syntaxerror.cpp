#include "host/jsc/syntaxerror.h"

#include "host/jsc/toolscript.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace engine::jsc {

namespace {

/// What is thrown while a script runs has a stack.
bool isFaultOfScript(JSContextRef ctx, JSValueRef error)
{
    if (!error || !JSValueIsObject(ctx, error))
        return false;
    const auto get = [&](const char* name) {
        return JSObjectGetProperty(ctx, asObject(error), Text(name), nullptr);
    };
    return JSValueIsNumber(ctx, get("line")) && JSValueIsUndefined(ctx, get("stack"));
}

QJsonObject findFault(const QString& source, bool isBody)
{
    ToolScript script;
    script.loadParser();
    return QJsonDocument::fromJson(script.call(isBody ? "findFaultInBody" : "findFault", source)).object();
}

void set(JSContextRef ctx, JSValueRef error, const char* name, JSValueRef value)
{
    JSObjectSetProperty(ctx, asObject(error), Text(name), value, kJSPropertyAttributeDontEnum, nullptr);
}

} // namespace

void placeSyntaxError(JSContextRef ctx, JSValueRef error, const QString& script, const QString& source)
{
    const int begin = script.indexOf(source); // on the first line
    if (begin < 0 || !isFaultOfScript(ctx, error))
        return;
    const QJsonObject fault = findFault(source, script != source);
    if (fault.isEmpty())
        return;
    const int line = fault[QLatin1String("line")].toInt();
    const int column = fault[QLatin1String("column")].toInt() + (line == 1 ? begin : 0);
    set(ctx, error, "message", makeString(ctx, fault[QLatin1String("message")].toString()));
    set(ctx, error, "line", JSValueMakeNumber(ctx, line));
    set(ctx, error, "column", JSValueMakeNumber(ctx, column));
}

} // namespace engine::jsc
