#include "host/jsc/syntax.h"

#include "host/jsc/api.h"

namespace engine::jsc {

bool compiles(const QString& source)
{
    JSGlobalContextRef ctx = JSGlobalContextCreate(nullptr);
    const bool ok = JSCheckScriptSyntax(ctx, Text(source), nullptr, 1, nullptr);
    JSGlobalContextRelease(ctx);
    return ok;
}

} // namespace engine::jsc
