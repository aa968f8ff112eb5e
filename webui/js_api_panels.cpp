#include "webui/js_api_panels.h"

const MemberList& KJsApiAiDocsChat::members()
{
    static const MemberList list {
        unbuilt(u"registerQACallback", Category::Usual, Type::JsValue, { Type::Object }),
        unbuilt(u"qaNotify", Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    return list;
}

const MemberList& KJObjWebDocsControl::members()
{
    static const MemberList list =
        MemberList {
            unbuilt(u"notifySetupFinished", Category::Usual, Type::JsValue, { Type::JsValue }),
        }
            .withEvents<KJObjWebDocsControl>();
    return list;
}

const MemberList& KJObjContract::members()
{
    static const MemberList list {
        unbuilt(u"registerCallback", Category::Usual, Type::JsValue, { Type::Object }),
        unbuilt(u"panelNotify", Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    return list;
}
