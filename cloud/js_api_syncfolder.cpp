#include "cloud/js_api_syncfolder.h"

namespace jsapi {

const MemberList& KJsApiSyncFolder::members()
{
    static const MemberList list = MemberList { "Folders that are kept in step with the cloud.",
        {
            unbuiltListeners(u"addNotifyListener", u"removeNotifyListener", Category::None),
            unbuilt(u"openSyncFolderListDlg", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"showSyncFolderPathWidget", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"openCloudSpacePage", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getFolderSize", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getSupportSelectSyncFolderMode", Category::Usual, Type::JsValue),
            unbuilt(u"syncFolderPrecheck", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"desktopSyncPreCheck", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"syncToLocalPrecheck", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"setPersonalDesktopSync", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"cancelPersonalDesktopSync", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getIsNeedRepairOverlayIcon", Category::Usual, Type::JsValue),
            unbuilt(u"doRepairOverlayIcon", Category::Usual, Type::JsValue),
            unbuilt(u"syncFolder", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"syncToLocal", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"changeSyncPath", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"checkSyncFolderPathValid", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"checkSyncFolderValid", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getRecentFileList", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"scanFolder", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getSyncFolderCount", Category::Usual, Type::JsValue),
            unbuilt(u"showNovaBox", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getUserTypeList", Category::Usual, Type::JsValue),
            unbuilt(u"showCompanyPrivilegeDlg", Category::Usual, Type::JsValue, { Type::JsValue }),
        } }.withEvents();
    return list;
}

} // namespace jsapi
