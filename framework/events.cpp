#include "framework/events.h"

#include "vexlite/jsapiutil.h"

#include <algorithm>

void IKJSExtentionApiEvent::tell(const char* event, const QVariantMap& values)
{
    KJSVariant payload;
    KJSApiUtil::ConvertQVariantToJSVariant(values, payload);
    dispatch(ownText(event), JSContextEnv::everyContext(), { std::move(payload) });
}

bool IKJSExtentionApiEvent::hasListeners()
{
    KJSVariant report;
    QVariant events;
    if (IJSEventHub* listeners = hub())
        listeners->Report(report);
    KJSApiUtil::ConvertJSVariantToQVariant(report, events);
    const QVariantList list = events.toList();
    return std::any_of(list.begin(), list.end(),
        [](const QVariant& event) { return event.toMap().value(ownText("listenerCount")).toInt() > 0; });
}
