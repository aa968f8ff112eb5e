#include "webui/js_api_webviewmgr.h"

namespace jsapi {

const MemberList& KJsApiWebviewMgr::members()
{
    static const MemberList list { "Opens web-view windows and finds them again.",
        {
            unbuilt(u"create", Category::Usual, Type::Object, { Type::JsValue }),
            unbuilt(u"getWebview", Category::Usual, Type::Object, { Type::String }),
        } };
    return list;
}

} // namespace jsapi
