#include "host/jsc/methods.h"

#include "host/jsc/pagestate.h"
#include "host/jsc/scripttext.h"

namespace engine::jsc {

namespace {

// One script for each class: the native functions are constants in it, so the compiler can call them
// directly. Pages that look for "[native code]" in the source of a function find it.
QString writeSource(const std::vector<MethodSource>& sources)
{
    QString parameters = QStringLiteral("signals");
    QString methods;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const QString native = QStringLiteral("native%1").arg(i);
        parameters += QLatin1Char(',') + native;
        methods += QStringLiteral("%1(){/* [native code] */const data=%2.apply(this,arguments);"
                                  "return signals[0]===1?{data,success:true}:data;},")
                       .arg(propertyNameText(sources[i].name), native);
    }
    return QStringLiteral("(function(%1){'use strict';return{%2};})").arg(parameters, methods);
}

} // namespace

JSObjectRef makeMethods(PageState& page, const QString& tag, const std::vector<MethodSource>& sources)
{
    JSContextRef ctx = page.ctx();
    const Text source(writeSource(sources));
    const JSValueRef maker =
        JSEvaluateScript(ctx, source, nullptr, Text(QStringLiteral("nova:") + tag), 1, nullptr);
    if (!maker)
        return nullptr;
    std::vector<JSValueRef> arguments { page.prelude().signalArray };
    for (const MethodSource& method : sources) {
        JSObjectSetPrototype(ctx, method.native, page.prelude().nativePrototype);
        arguments.push_back(method.native);
    }
    return asObject(
        JSObjectCallAsFunction(ctx, asObject(maker), nullptr, arguments.size(), arguments.data(), nullptr));
}

} // namespace engine::jsc
