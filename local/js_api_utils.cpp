#include "local/js_api_utils.h"

namespace jsapi {

const MemberList& KJsApiUtils::members()
{
    static const MemberList list { "Clipboard, screens, colours and small helpers.",
        {
            unbuilt(u"setTextToClipboard", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"getClipboardText", Category::Usual, Type::JsValue),
            unbuilt(u"setImageToClipboard", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getPrimaryScreenGeometry", Category::Usual, Type::JsValue),
            unbuilt(u"getAllScreenGeometry", Category::Usual, Type::JsValue),
            unbuilt(u"getCurrentScreenGeometry", Category::Usual, Type::JsValue),
            unbuilt(u"pickColor", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
            unbuilt(u"getPictureFilepath", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"startDetach", Category::Usual, Type::Boolean, { Type::JsValue }),
            unbuilt(u"getSnapperColor", Category::Usual, Type::JsValue, { Type::JsValue, Type::Object }),
            unbuilt(u"getParamExtra", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"inBlackDownloadDir", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"getCsrf", Category::Usual, Type::JsValue),
        } };
    return list;
}

} // namespace jsapi
