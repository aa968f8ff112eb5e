#include "webui/js_api_panels.h"

const MemberList& KJsApiAiDocsChat::members()
{
    // clang-format off
    static const MemberList list {
        // member                      category         answer         parameters
        unbuilt(u"registerQACallback", Category::Usual, Type::JsValue, { Type::Object }),
        unbuilt(u"qaNotify",           Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}

const MemberList& KJObjWebDocsControl::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                       category         answer         parameters
        unbuilt(u"notifySetupFinished", Category::Usual, Type::JsValue, { Type::JsValue }),
    }.withEvents<KJObjWebDocsControl>();
    // clang-format on
    return list;
}

const MemberList& KJObjContract::members()
{
    // clang-format off
    static const MemberList list {
        // member                    category         answer         parameters
        unbuilt(u"registerCallback", Category::Usual, Type::JsValue, { Type::Object }),
        unbuilt(u"panelNotify",      Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}
