#include "cloud/js_api_cloudadapter.h"

namespace jsapi {

const MemberList& KJsApiCloudAdapter::members()
{
    static const MemberList list = MemberList { "Generic requests to the cloud service, with its events.",
        {
            unbuilt(u"commonRequest", Category::Usual, Type::JsValue, { Type::JsValue }),
        } }.withEvents();
    return list;
}

} // namespace jsapi
