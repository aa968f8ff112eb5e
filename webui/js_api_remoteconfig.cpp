#include "webui/js_api_remoteconfig.h"

const MemberList& KJsApiHive::members()
{
    // clang-format off
    static const MemberList list {
        // member                            category         answer         parameters
        unbuilt(u"addDataWatch",             Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
        unbuilt(u"getData",                  Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"getGroupMatchValue",       Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"getHiveConfig",            Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"translateContext",         Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"i18nFieldName",            Category::Usual, Type::JsValue, { Type::JsValue }),
        unbuilt(u"subscribeGroupMatchValue", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
    };
    // clang-format on
    return list;
}

const MemberList& KJsApiCirrusConfig::members()
{
    // clang-format off
    static const MemberList list {
        // member                 category         answer         parameters
        unbuilt(u"getAuthSwitch", Category::Read,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"setAuthSwitch", Category::Write, Type::JsValue, { Type::JsValue }),
        unbuilt(u"getConfigData", Category::Write, Type::JsValue, { Type::JsValue }),
        unbuilt(u"setConfigData", Category::Write, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}
