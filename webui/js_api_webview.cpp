#include "webui/js_api_webview.h"

namespace jsapi {

const MemberList& KJsApiWebview::members()
{
    static const MemberList list { "The window that shows the calling page. Every page has its own.",
        {
            unbuiltListeners(u"addHideListener", u"removeHideListener", Category::Usual),
            unbuiltListeners(u"addDestroyListener", u"removeDestroyListener", Category::Usual),
            unbuiltListeners(u"addShowListener", u"removeShowListener", Category::Usual),
            unbuiltListeners(u"addCloseListener", u"removeCloseListener", Category::Usual),
            unbuiltListeners(
                u"addWindowActivateStateListener", u"removeWindowActivateStateListener", Category::Usual),
            unbuiltListeners(u"addResizeListener", u"removeResizeListener", Category::Usual),
            unbuiltListeners(u"addDragEnterListener", u"removeDragEnterListener", Category::Usual),
            unbuiltListeners(u"addWebviewEventListener", u"removeWebviewEventListener", Category::Usual),
            unbuilt(u"destroy", Category::Usual, Type::JsValue),
            unbuilt(u"show", Category::Usual, Type::JsValue),
            unbuilt(u"hide", Category::Usual, Type::JsValue),
            unbuilt(u"takeFocus", Category::Usual, Type::JsValue),
            unbuilt(u"setMode", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"setResizeable", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"setWindowTitle", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"setWindowBackgroundColor", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setEnableStayOnTop", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"getSize", Category::Usual, Type::JsValue),
            unbuilt(u"getScreenNumber", Category::Usual, Type::JsValue),
            unbuilt(u"isMaximize", Category::Usual, Type::JsValue),
            unbuilt(u"isMinimize", Category::Usual, Type::JsValue),
            unbuilt(u"isFullScreen", Category::Usual, Type::JsValue),
            unbuilt(u"setWindowFlags", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setWindowFlag", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setAttribute", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setRoundFillColor", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setDisableScrollBar", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"setDisableXScrollBar", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"setDisableYScrollBar", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"getGeometry", Category::Usual, Type::JsValue),
            unbuilt(u"setGeometry", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setSize", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setDragArea", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"clearDragArea", Category::Usual, Type::JsValue),
            unbuilt(u"setBlackDragArea", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"clearBlackDragArea", Category::Usual, Type::JsValue),
            unbuilt(u"setMaximize", Category::Usual, Type::JsValue),
            unbuilt(u"setMinimize", Category::Usual, Type::JsValue),
            unbuilt(u"setRestore", Category::Usual, Type::JsValue),
            unbuilt(u"setFullScreen", Category::Usual, Type::JsValue),
            unbuilt(u"setMinimumSize", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setMaximumSize", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setMinimumWidth", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setMinimumHeight", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setMaximumWidth", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setMaximumHeight", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getID", Category::Usual, Type::JsValue),
            unbuilt(u"pageReady", Category::Usual, Type::JsValue),
            unbuilt(u"setDragEnterEnable", Category::Usual, Type::JsValue, { Type::Boolean }),
            unbuilt(u"invokeGeneralMethod", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"invokeGeneralMethodAsync", Category::Usual, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

} // namespace jsapi
