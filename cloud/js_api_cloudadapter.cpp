#include "cloud/js_api_cloudadapter.h"

const MemberList& KJsApiCloudAdapter::members()
{
    static const MemberList list =
        MemberList {
            unbuilt(u"commonRequest", Category::Usual, Type::JsValue, { Type::JsValue }),
        }
            .withEvents<KJsApiCloudAdapter>();
    return list;
}
