#include "local/js_api_network.h"

namespace jsapi {

const MemberList& KJsApiNetwork::members()
{
    static const MemberList list { "Downloads and HTTP requests.",
        {
            unbuilt(u"isConnected", Category::Usual, Type::JsValue),
            unbuilt(u"download", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
            unbuilt(u"cancelDownload", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"httpRequest", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
            unbuilt(u"fetch", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"abortRequest", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"genarateRequestId", Category::Usual, Type::JsValue),
        } };
    return list;
}

} // namespace jsapi
