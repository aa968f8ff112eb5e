#include "webui/js_api_pluginmanager.h"

const MemberList& KJsApiPluginManager::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member             category         answer        parameters
        unbuilt(u"getPlugin", Category::Usual, Type::Object, { Type::String }),
    }.handingOut<KJsApiPlugin>();
    // clang-format on
    return list;
}

const MemberList& KJsApiPlugin::members()
{
    // clang-format off
    static const MemberList list {
        // member                     category         answer         parameters
        unbuilt(u"load",              Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
        unbuilt(u"getProp",           Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"resourceFilePath",  Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"frameworkFilePath", Category::Usual, Type::JsValue, { Type::String }),
    };
    // clang-format on
    return list;
}
