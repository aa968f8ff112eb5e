#include "framework/events.h"

#include "vexlite/jsapiutil.h"

void IKJSExtentionApiEvent::tell(const char* event, const QVariantMap& values)
{
    KJSVariant payload;
    KJSApiUtil::ConvertQVariantToJSVariant(values, payload);
    dispatch(ownText(event), JSContextEnv::everyContext(), { std::move(payload) });
}
