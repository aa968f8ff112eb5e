#include "local/js_api_tools.h"

const MemberList& KJsApiTools::members()
{
    // clang-format off
    static const MemberList list {
        // member                       category          answer         parameters
        unbuilt(u"openUrl",             Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"openInnerUrl",        Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getDomainUrl",        Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"launchProcessByNova", Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getIntranetType",     Category::Usual,  Type::JsValue),
        unbuilt(u"compress",            Category::Launch, Type::JsValue, { Type::JsValue }),
        unbuilt(u"decompress",          Category::Launch, Type::JsValue, { Type::JsValue }),
        unbuilt(u"showConfirmDlg",      Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"sendMail",            Category::Usual,  Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}
