#include "host/jsc/syntaxerror.h"

#include <algorithm>

namespace engine::jsc {

namespace {

struct SyntaxFault {
    QString message;
    int line = 0; ///< 0: there is none
};

SyntaxFault readFault(JSContextRef ctx, JSValueRef error)
{
    if (!error || !JSValueIsObject(ctx, error))
        return {};
    const auto get = [&](const char* name) {
        return JSObjectGetProperty(ctx, asObject(error), Text(name), nullptr);
    };
    const JSValueRef line = get("line");
    if (!JSValueIsNumber(ctx, line) || !JSValueIsUndefined(ctx, get("stack")))
        return {};
    return { stringOf(ctx, get("message")), static_cast<int>(JSValueToNumber(ctx, line, nullptr)) };
}

SyntaxFault findFault(JSContextRef ctx, const QString& script)
{
    JSValueRef error = nullptr;
    JSCheckScriptSyntax(ctx, Text(script), nullptr, 1, &error);
    return readFault(ctx, error);
}

int startOfLine(const QString& text, int line)
{
    int start = 0;
    while (--line > 0)
        start = text.indexOf(QLatin1Char('\n'), start) + 1;
    return start;
}

// The engine stops at the first token that does not fit: of all beginnings of the script, those that have it have the same
// fault, and those that end before it another one.
int endOfFault(JSContextRef ctx, const QString& script, const SyntaxFault& fault, int start, int end)
{
    while (start < end) {
        const int middle = start + (end - start) / 2;
        const SyntaxFault found = findFault(ctx, script.left(middle));
        if (found.message == fault.message && found.line == fault.line)
            end = middle;
        else
            start = middle + 1;
    }
    return start;
}

// The length of the token that a message names in quotes at its end.
int tokenLength(const QString& message)
{
    const int quote = message.indexOf(QLatin1Char('\''));
    return quote < 0 || !message.endsWith(QLatin1Char('\'')) ? 0 : message.size() - quote - 2;
}

// Without the blanks and lines at the end.
int trimmedLength(const QString& text)
{
    int length = text.size();
    while (length > 0 && text[length - 1].isSpace())
        --length;
    return length;
}

void set(JSContextRef ctx, JSValueRef error, const char* name, JSValueRef value)
{
    JSObjectSetProperty(ctx, asObject(error), Text(name), value, kJSPropertyAttributeDontEnum, nullptr);
}

} // namespace

void placeSyntaxError(JSContextRef ctx, JSValueRef error, const QString& script, const QString& source)
{
    const SyntaxFault fault = readFault(ctx, error);
    if (!fault.line)
        return;
    const int length = trimmedLength(source);
    const int lastLine = source.leftRef(length).count(QLatin1Char('\n')) + 1;
    const int start = startOfLine(script, fault.line);
    int end = script.indexOf(QLatin1Char('\n'), start);
    if (end < 0)
        end = script.size();
    const bool isBeyond = fault.line > source.count(QLatin1Char('\n')) + 1;
    const int place = isBeyond ? 0 : endOfFault(ctx, script, fault, start, end) - tokenLength(fault.message);
    if (!isBeyond) {
        set(ctx, error, "column", JSValueMakeNumber(ctx, std::max(place - start, 0) + 1));
        return;
    }
    const int begin = script.indexOf(source);
    const int sourceEnd = begin < 0 ? script.size() : begin + length;
    set(ctx, error, "message", makeString(ctx, QStringLiteral("Unexpected end of input")));
    set(ctx, error, "line", JSValueMakeNumber(ctx, lastLine));
    set(ctx, error, "column", JSValueMakeNumber(ctx, sourceEnd - startOfLine(script, lastLine) + 1));
}

} // namespace engine::jsc
