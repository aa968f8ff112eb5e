#include "framework/handle.h"

namespace jsapi {

KRef<IJSExtentionObject> createObject(
    const JSContextEnv& page, const char16_t* scriptName, IJSONValue* options)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    IJSObjectFactory* factory = core ? core->Objects() : nullptr;
    return KRef<IJSExtentionObject>(
        factory ? factory->Create(QString::fromUtf16(scriptName), page, options) : nullptr);
}

} // namespace jsapi
