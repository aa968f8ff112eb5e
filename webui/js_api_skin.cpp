#include "webui/js_api_skin.h"

const MemberList& KJsApiSkin::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                            category         answer         parameters
        unbuilt(u"addSkinChangeListener",    Category::None,  Type::JsValue, { Type::Object }),
        unbuilt(u"removeSkinChangeListener", Category::None,  Type::JsValue, { Type::Object }),
        unbuilt(u"getCurrentSkinName",       Category::Usual, Type::JsValue),
        unbuilt(u"switchSkin",               Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"getSkinHintConfig",        Category::None,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getSkinGradientConfig",    Category::None,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getSkinColorConfig",       Category::None,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getSkinConfig",            Category::None,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getFileTypeIconInfo",      Category::None,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getSkinIconPathInfo",      Category::None,  Type::JsValue, { Type::JsValue }),
    }.withEvents<KJsApiSkin>();
    // clang-format on
    return list;
}
