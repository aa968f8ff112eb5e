#pragma once

#include "framework/extensionobject.h"

class KJsApiWebWidget;

namespace jsapi {

class KJsApiWebview;

/// "NovaExtension.WebviewMgr": opens web-view windows and finds them again.
class KJsApiWebviewMgr final : public KJCExtendJsObj<KJsApiWebviewMgr> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.WebviewMgr";
    static const MemberList& members();

    struct CreateOptions;
    struct ViewId;

    Answer<Handle<KJsApiWebview>> create(const JSContextEnv& page, const CreateOptions& options);
    Answer<Handle<KJsApiWebview>> getWebview(const JSContextEnv& page, const ViewId& viewId);

private:
    /// A new web widget of the kind that is wanted.
    static Answer<KJsApiWebWidget*> makeWidget(const CreateOptions& options);
};

} // namespace jsapi
