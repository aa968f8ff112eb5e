#include "webui/js_api_skin.h"

namespace jsapi {

const MemberList& KJsApiSkin::members()
{
    static const MemberList list = MemberList { "The visual theme, its values and its changes.",
        {
            unbuiltListeners(u"addSkinChangeListener", u"removeSkinChangeListener", Category::None),
            unbuilt(u"getCurrentSkinName", Category::Usual, Type::JsValue),
            unbuilt(u"switchSkin", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"getSkinHintConfig", Category::None, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getSkinGradientConfig", Category::None, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getSkinColorConfig", Category::None, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getSkinConfig", Category::None, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getFileTypeIconInfo", Category::None, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getSkinIconPathInfo", Category::None, Type::JsValue, { Type::JsValue }),
        } }.withEvents();
    return list;
}

} // namespace jsapi
