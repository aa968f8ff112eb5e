#include "webui/js_api_webviewmgr.h"

const MemberList& KJsApiWebviewMgr::members()
{
    // clang-format off
    static const MemberList list {
        // member              category         answer        parameters
        unbuilt(u"create",     Category::Usual, Type::Object, { Type::JsValue }),
        unbuilt(u"getWebview", Category::Usual, Type::Object, { Type::String }),
    };
    // clang-format on
    return list;
}
