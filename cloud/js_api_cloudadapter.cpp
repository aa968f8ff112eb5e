#include "cloud/js_api_cloudadapter.h"

const MemberList& KJsApiCloudAdapter::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                 category         answer         parameters
        unbuilt(u"commonRequest", Category::Usual, Type::JsValue, { Type::JsValue }),
    }.withEvents<KJsApiCloudAdapter>();
    // clang-format on
    return list;
}
