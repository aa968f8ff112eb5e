#include "local/js_api_network.h"

const MemberList& KJsApiNetwork::members()
{
    // clang-format off
    static const MemberList list {
        // member                     category         answer         parameters
        unbuilt(u"isConnected",       Category::Usual, Type::JsValue),
        unbuilt(u"download",          Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
        unbuilt(u"cancelDownload",    Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"httpRequest",       Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
        unbuilt(u"fetch",             Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"abortRequest",      Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"genarateRequestId", Category::Usual, Type::JsValue),
    };
    // clang-format on
    return list;
}
