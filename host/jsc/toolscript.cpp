#include "host/jsc/toolscript.h"

#include "host/jsc/api.h"

#include <QFile>

// Outside any namespace, as the macro demands.
static void initialiseParser()
{
    Q_INIT_RESOURCE(parser);
}

namespace engine::jsc {

struct ToolScript::Context {
    Context()
        : ctx(JSGlobalContextCreate(nullptr))
    {
    }
    ~Context() { JSGlobalContextRelease(ctx); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    JSGlobalContextRef ctx;
};

ToolScript::ToolScript()
    : m_context(std::make_unique<Context>())
{
}

ToolScript::~ToolScript() = default;

void ToolScript::load(const QString& source)
{
    JSContextRef ctx = m_context->ctx;
    JSValueRef exception = nullptr;
    if (JSEvaluateScript(ctx, Text(source), nullptr, Text("novahost"), 1, &exception))
        return;
    const Text text = Text::adopt(JSValueToStringCopy(ctx, exception, nullptr));
    qFatal("a script of novahost does not run: %s", qUtf8Printable(text.toQString()));
}

void ToolScript::loadParser()
{
    initialiseParser();
    for (const char* name : { "acorn.js", "findfault.js", "findread.js" }) {
        QFile file(QLatin1String(":/nova/parser/") + QLatin1String(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("the script %s is not compiled in", name);
        load(QString::fromUtf8(file.readAll()));
    }
}

void ToolScript::set(const char* name, const QString& text)
{
    JSContextRef ctx = m_context->ctx;
    JSObjectSetProperty(ctx, JSContextGetGlobalObject(ctx), Text(name), makeString(ctx, text),
        kJSPropertyAttributeNone, nullptr);
}

QByteArray ToolScript::call(const char* function, const QString& text)
{
    JSContextRef ctx = m_context->ctx;
    // Declared with const, so no property of the global object.
    const JSValueRef callee = JSEvaluateScript(ctx, Text(function), nullptr, nullptr, 1, nullptr);
    const JSValueRef argument = makeString(ctx, text);
    const JSValueRef value =
        callee ? JSObjectCallAsFunction(ctx, asObject(callee), nullptr, 1, &argument, nullptr) : nullptr;
    if (!value)
        return {};
    return Text::adopt(JSValueCreateJSONString(ctx, value, 0, nullptr)).toQString().toUtf8();
}

} // namespace engine::jsc
