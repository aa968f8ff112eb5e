#include "webui/js_api_remoteconfig.h"

namespace jsapi {

const MemberList& KJsApiHive::members()
{
    static const MemberList list { "Remote feature configuration, read and watched.",
        {
            unbuilt(u"addDataWatch", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
            unbuilt(u"getData", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getGroupMatchValue", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getHiveConfig", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"translateContext", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"i18nFieldName", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(
                u"subscribeGroupMatchValue", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
        } };
    return list;
}

const MemberList& KJsApiCirrusConfig::members()
{
    static const MemberList list { "Remote feature configuration by switch and section.",
        {
            unbuilt(u"getAuthSwitch", Category::Read, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setAuthSwitch", Category::Write, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getConfigData", Category::Write, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setConfigData", Category::Write, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

} // namespace jsapi
