#include "webui/js_api_pluginmanager.h"

const MemberList& KJsApiPluginManager::members()
{
    static const MemberList list =
        MemberList {
            unbuilt(u"getPlugin", Category::Usual, Type::Object, { Type::String }),
        }
            .handingOut<KJsApiPlugin>();
    return list;
}

const MemberList& KJsApiPlugin::members()
{
    static const MemberList list {
        unbuilt(u"load", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
        unbuilt(u"getProp", Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"resourceFilePath", Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"frameworkFilePath", Category::Usual, Type::JsValue, { Type::String }),
    };
    return list;
}
