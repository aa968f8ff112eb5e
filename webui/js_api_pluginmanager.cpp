#include "webui/js_api_pluginmanager.h"

namespace jsapi {

const MemberList& KJsApiPluginManager::members()
{
    static const MemberList list = MemberList { "Finds plugins by name.",
        {
            unbuilt(u"getPlugin", Category::Usual, Type::Object, { Type::String }),
        } }.handingOut<KJsApiPlugin>();
    return list;
}

const MemberList& KJsApiPlugin::members()
{
    static const MemberList list { "One plugin of the suite.",
        {
            unbuilt(u"load", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
            unbuilt(u"getProp", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"resourceFilePath", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"frameworkFilePath", Category::Usual, Type::JsValue, { Type::String }),
        } };
    return list;
}

} // namespace jsapi
