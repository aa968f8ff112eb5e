#include "webui/js_api_webviewmgr.h"

const MemberList& KJsApiWebviewMgr::members()
{
    static const MemberList list {
        unbuilt(u"create", Category::Usual, Type::Object, { Type::JsValue }),
        unbuilt(u"getWebview", Category::Usual, Type::Object, { Type::String }),
    };
    return list;
}
