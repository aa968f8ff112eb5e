#include "local/js_api_tools.h"

namespace jsapi {

const MemberList& KJsApiTools::members()
{
    static const MemberList list { "Pages, mail, processes and archives.",
        {
            unbuilt(u"openUrl", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"openInnerUrl", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getDomainUrl", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"launchProcessByNova", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getIntranetType", Category::Usual, Type::JsValue),
            unbuilt(u"compress", Category::Launch, Type::JsValue, { Type::JsValue }),
            unbuilt(u"decompress", Category::Launch, Type::JsValue, { Type::JsValue }),
            unbuilt(u"showConfirmDlg", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"sendMail", Category::Usual, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

} // namespace jsapi
