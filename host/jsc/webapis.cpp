#include "host/jsc/webapis.h"

#include <QFile>

// Outside any namespace, as the macro demands.
static void initialiseResource()
{
    Q_INIT_RESOURCE(webapis);
}

namespace engine::jsc {

JSValueRef loadWebApi(JSContextRef ctx, const QString& name, JSValueRef* exception)
{
    initialiseResource();
    QFile file(QStringLiteral(":/nova/webapis/%1.js").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the script %s is not compiled in", qUtf8Printable(name));
    const QString source = QStringLiteral("(function (globalThis, native) {")
        + QString::fromUtf8(file.readAll()) + QStringLiteral("\nreturn webApis; })");
    return JSEvaluateScript(ctx, Text(source), nullptr, Text(QLatin1String("nova:") + name), 1, exception);
}

} // namespace engine::jsc
