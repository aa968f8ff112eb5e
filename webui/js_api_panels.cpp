#include "webui/js_api_panels.h"

namespace jsapi {

const MemberList& KJsApiAiDocsChat::members()
{
    static const MemberList list { "Notifications between a page and the document chat panel.",
        {
            unbuilt(u"registerQACallback", Category::Usual, Type::JsValue, { Type::Object }),
            unbuilt(u"qaNotify", Category::Usual, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

const MemberList& KJObjWebDocsControl::members()
{
    static const MemberList list = MemberList { "Informs the suite that a web document has been set up.",
        {
            unbuilt(u"notifySetupFinished", Category::Usual, Type::JsValue, { Type::JsValue }),
        } }.withEvents();
    return list;
}

const MemberList& KJObjContract::members()
{
    static const MemberList list { "Notifications between a page and the contract panel.",
        {
            unbuilt(u"registerCallback", Category::Usual, Type::JsValue, { Type::Object }),
            unbuilt(u"panelNotify", Category::Usual, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

} // namespace jsapi
