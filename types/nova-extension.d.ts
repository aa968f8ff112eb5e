// Made by scripts/reference from api.json. Do not edit.

/** The native objects that a page finds. */
declare const NovaExtension: {
    /**
     * Remote feature configuration, read and watched. A server decides it; what is here is what came from there last,
     * so nothing waits. Values have names and hold anything that JSON can spell. Groups have one value for each
     * context: for the user's language, version, share of a staged introduction.
     */
    readonly Hive: NovaExtension.Hive;
    /** Makes byte buffers. */
    readonly ByteBufferManager: NovaExtension.ByteBufferManager;
    /**
     * Guarded access to local files and to the suite's file dialogs. Where a member writes or removes, its path must be
     * absolute or begin with an environment variable between percent signs (`%HOME%/a.txt`). A dialog runs until the
     * user has ended it; a page has one at a time, and one that it opens meanwhile is cancelled at once.
     */
    readonly FileSystem: NovaExtension.FileSystem;
    /**
     * Downloads and HTTP requests. Each server must be permitted to the page, at every redirect; an address that is not
     * public (of this machine, a local network, a special use) must be so itself. Certificates are verified. There are
     * no cookies, no cache and no credentials but the page's own headers. A page has at most 6 requests and downloads
     * under way at once, all pages 32; as many as 256 of a page wait. They end with the page. Functions are called
     * after the member has returned.
     */
    readonly Network: NovaExtension.Network;
    /** Facts about this installation. What the suite does not know is an empty string. */
    readonly Novaoffice: NovaExtension.Novaoffice;
    /** Posts events to the suite's data collection. */
    readonly TelemetrySdk: NovaExtension.TelemetrySdk;
    /** Writes records into the suite's log. */
    readonly Log: NovaExtension.Log;
    /** Named values that outlive the process, for everybody or for one user. */
    readonly ConfigCenter: NovaExtension.ConfigCenter;
    /**
     * Remote feature configuration by switch and section: what the server has decided for the signed-in user, and what
     * the user has chosen instead, which is stored.
     */
    readonly CirrusConfig: NovaExtension.CirrusConfig;
    /** Finds plugins by name. */
    readonly PluginManager: NovaExtension.PluginManager;
    /**
     * A view and its window: that of the calling page, of which every page has its own, or another one from
     * `WebviewMgr`. Lengths are in CSS pixels.
     */
    readonly Webview: NovaExtension.Webview;
    /** Opens web-view windows and finds them again. */
    readonly WebviewMgr: NovaExtension.WebviewMgr;
    /**
     * When the calling page's browser was made and loaded. Times are milliseconds since 1970 (UTC), 0 for what has not
     * happened; durations are milliseconds and never negative.
     */
    readonly Profile: NovaExtension.Profile;
    /**
     * Text encoding and digests, of strings and of bytes. A string stands for its UTF-8, so one with half a surrogate
     * pair is refused.
     */
    readonly Crypto: NovaExtension.Crypto;
    /** The signed-in user's cloud documents, and what happens to them. Listeners of every page get the events. */
    readonly CloudDoc: NovaExtension.CloudDoc;
    /** Opens settings stores. */
    readonly SettingsManager: NovaExtension.SettingsManager;
    /** Clipboard, screens, colours and small helpers. */
    readonly Utils: NovaExtension.Utils;
    /** The product's fixed strings, switches and configuration. What is not there is an empty string or 0. */
    readonly Product: NovaExtension.Product;
    /** Pages, mail, processes and archives. A page opens, shows or starts at most 20 things in ten seconds. */
    readonly Tools: NovaExtension.Tools;
    /** A channel between pages, with nothing but the four generic event members. */
    readonly Event: NovaExtension.Event;
    /** Opens the suite's purchase page. */
    readonly Payment: NovaExtension.Payment;
    /** The visual theme, its values and its changes. */
    readonly Skin: NovaExtension.Skin;
    /**
     * The signed-in user, login and logout, and their changes. With nobody signed in, strings and lists are empty and
     * booleans `false`.
     */
    readonly Account: NovaExtension.Account;
    /** Generic requests to the cloud service, with its events. */
    readonly CloudAdapter: NovaExtension.CloudAdapter;
    /** Notifications between a page and the document chat panel. */
    readonly AiDocsChat: NovaExtension.AiDocsChat;
    /**
     * Folders of this machine that are kept in step with a folder of the cloud. `syncFolder` makes a folder one of
     * them; from then on it is looked at every few seconds, and changes of either side go to the other. Of a file that
     * has changed on both sides both versions are kept; one that was removed on one side is removed on the other only
     * when it has not changed there. `getSyncFolderCount` lists them, the listeners learn what is done. While another
     * dialog of the page is open, its dialogs end at once as if the user had cancelled them.
     */
    readonly SyncFolder: NovaExtension.SyncFolder;
    /** Informs the cloud-document service that a web document has been set up. */
    readonly WebDocsControl: NovaExtension.WebDocsControl;
    /** Notifications between a page and the contract panel. */
    readonly KContract: NovaExtension.KContract;
};

declare namespace NovaExtension {
    /** What a call that succeeded returns. */
    interface Answer<Data> {
        readonly success: true;
        readonly data: Data;
    }

    /**
     * An integer of 64 bits: a time in milliseconds, a size in bytes. Beyond 2^53, where a number would lose digits,
     * script gets a BigInt; no time and no size is as large, so that the type does not make pages look for it.
     */
    type Int64 = number;

    /** What a member takes for bytes. It sees them as they are when it is called, and never changes them. */
    type Bytes = ArrayBuffer | ArrayBufferView | NovaExtension.ByteBufferManager.ByteBuffer;

    /**
     * What a call that failed throws, or its promise rejects with.
     *
     * Code 1: an argument is missing or wrong. Code 3: the operation failed, or the suite does not have the service.
     */
    interface Failure<Code extends number = number, Text extends string = string> extends Error {
        readonly success: false;
        readonly code: Code;
        readonly msg: Text;
        readonly message: Text;
    }

    /** The failures of each member. */
    interface Failures {
        "Hive.addDataWatch": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "too many watches.">;
        "Hive.getData": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Hive.getGroupMatchValue": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Hive.getHiveConfig": Failure<3, "Remote config service error.">;
        "Hive.translateContext": Failure<3, "Remote config service error.">;
        "Hive.i18nFieldName": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters.">;
        "Hive.subscribeGroupMatchValue": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "too many watches.">;
        "ByteBufferManager.create": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<1, "Size is illegal."> | Failure<3, "Too many bytes in buffers."> | Failure<3, "empty handle.">;
        "FileSystem.File": Failure<3, "Path is empty."> | Failure<3, "Path is illegal."> | Failure<3, "empty handle.">;
        "FileSystem.exists": never;
        "FileSystem.copy": Failure<3, "Path is empty."> | Failure<1, "wrong parameters."> | Failure<3, "Path is illegal."> | Failure<3, "New path is illegal."> | Failure<3, "override existing file failed">;
        "FileSystem.officeData": never;
        "FileSystem.officeHome": never;
        "FileSystem.tempPath": never;
        "FileSystem.desktopPath": never;
        "FileSystem.homePath": never;
        "FileSystem.documentsPath": never;
        "FileSystem.openLocalLocation": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, `${string} is not existed`> | Failure<3, `${string} is not dir`> | Failure<3, `file ${string} is not exists`>;
        "FileSystem.getDllWorkPath": Failure<1, "missing required parameters.">;
        "FileSystem.downloadPath": never;
        "FileSystem.selectLocalFolder": Failure<1, "missing required parameters.">;
        "FileSystem.selectFolderx": Failure<3, "inputBox is null">;
        "FileSystem.mkpath": Failure<1, "Path is empty."> | Failure<3, "New path is illegal."> | Failure<3, "the directory already exist">;
        "FileSystem.remove": Failure<1, "Path is empty."> | Failure<3, "New path is illegal."> | Failure<1, `${string} is not existed`> | Failure<1, `${string} is not dir`>;
        "FileSystem.open": Failure<3, "Path is empty."> | Failure<3, `${string} is not existed`> | Failure<3, `${string} is not file`> | Failure<3, `Failed to open file : ${string} `>;
        "FileSystem.getFileStatus": Failure<1, `${string} is not existed`>;
        "FileSystem.getWritableSaveFileName": never;
        "FileSystem.getExistingDirectory": Failure<1, `${string} is not existed`> | Failure<1, `${string} is not dir`>;
        "FileSystem.getOpenFileNames": Failure<1, `${string} is not existed`> | Failure<1, `${string} is not dir`>;
        "FileSystem.getOpenFileName": Failure<1, `${string} is not existed`> | Failure<1, `${string} is not dir`>;
        "FileSystem.showSelectFilePanel": Failure<3, "empty handle"> | Failure<1, "wrong parameters.">;
        "FileSystem.getFileMd5": Failure<3, "Path is empty."> | Failure<3, `${string} is not existed`> | Failure<3, `${string} can't been opened`> | Failure<3, "PromiseServiceNull">;
        "FileSystem.startAccess": never;
        "FileSystem.isDir": never;
        "FileSystem.isDirWritable": never;
        "Network.isConnected": never;
        "Network.download": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<1, "Path is empty."> | Failure<1, "URL is illegal."> | Failure<1, "Headers are illegal."> | Failure<3, "Permission denied."> | Failure<3, "Path is illegal."> | Failure<3, "File exists."> | Failure<1, "Request id is in use."> | Failure<3, "Too many requests.">;
        "Network.cancelDownload": Failure<1, "wrong parameters."> | Failure<1, "missing required parameters.">;
        "Network.httpRequest": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<1, "URL is illegal."> | Failure<1, "Method is illegal."> | Failure<1, "Headers are illegal."> | Failure<1, "Body is illegal."> | Failure<3, "Permission denied."> | Failure<1, "Request id is in use."> | Failure<3, "Too many requests.">;
        "Network.fetch": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<1, "URL is illegal."> | Failure<1, "Method is illegal."> | Failure<1, "Headers are illegal."> | Failure<1, "Body is illegal."> | Failure<3, "Permission denied."> | Failure<1, "Request id is in use."> | Failure<3, "Too many requests."> | Failure<3, "PromiseServiceNull"> | Failure<3, "Host not found."> | Failure<3, "Connection failed."> | Failure<3, "TLS failed."> | Failure<3, "Timed out."> | Failure<3, "Too many redirects."> | Failure<3, "Redirect is illegal."> | Failure<3, "Response is broken."> | Failure<3, "Response is too large."> | Failure<3, "Canceled.">;
        "Network.abortRequest": Failure<1, "wrong parameters."> | Failure<1, "missing required parameters.">;
        "Network.genarateRequestId": never;
        "Novaoffice.getNovaVersion": never;
        "Novaoffice.getApplicationName": never;
        "Novaoffice.getGuid": never;
        "Novaoffice.getUuid": never;
        "Novaoffice.getHdid": never;
        "Novaoffice.getChannel": never;
        "Novaoffice.getComputerName": never;
        "Novaoffice.getSystemUserName": never;
        "Novaoffice.getNovaofficeInstallPath": never;
        "Novaoffice.getCurrentNovaDpi": never;
        "TelemetrySdk.postEvent": Failure<3, "kdcinfo error"> | Failure<1, "empty event name"> | Failure<1, "wrong parameters."> | Failure<1, "empty post content">;
        "Log.logInfo": Failure<1, "missing required parameters.">;
        "Log.logWarning": Failure<1, "missing required parameters.">;
        "ConfigCenter.setValue": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "ConfigCenter.value": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "ConfigCenter.remove": Failure<1, "missing required parameters.">;
        "ConfigCenter.flushRead": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "ConfigCenter.flushWrite": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "ConfigCenter.flushRemove": Failure<1, "missing required parameters.">;
        "CirrusConfig.getAuthSwitch": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<3, "There is no such switch.">;
        "CirrusConfig.setAuthSwitch": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "There is no such switch."> | Failure<3, "The switch can not be changed.">;
        "CirrusConfig.getConfigData": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "CirrusConfig.setConfigData": Failure<3, "Remote config service error."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "The value can not be stored.">;
        "PluginManager.getPlugin": Failure<3, "empty pBrowsersGroup"> | Failure<3, "plugin manager is null"> | Failure<3, "invalid plugin"> | Failure<3, "empty handle.">;
        "Webview.addHideListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeHideListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addDestroyListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeDestroyListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addShowListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeShowListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addCloseListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeCloseListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addWindowActivateStateListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeWindowActivateStateListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addResizeListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeResizeListener": Failure<3, "empty handle."> | Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addDragEnterListener": Failure<3, "empty handle."> | Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeDragEnterListener": Failure<3, "empty handle."> | Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.addWebviewEventListener": Failure<3, "empty handle."> | Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.removeWebviewEventListener": Failure<3, "empty handle."> | Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.destroy": Failure<3, "empty webshellwidget">;
        "Webview.show": Failure<3, "empty webwidget">;
        "Webview.hide": Failure<3, "empty webshellwidget">;
        "Webview.takeFocus": Failure<3, "empty webwidget"> | Failure<3, "empty webshellwidget">;
        "Webview.setMode": Failure<3, "empty webshellwidget">;
        "Webview.setResizeable": Failure<3, "empty webwidget">;
        "Webview.setWindowTitle": Failure<3, "empty webshellwidget">;
        "Webview.setWindowBackgroundColor": Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setEnableStayOnTop": Failure<3, "empty webshellwidget">;
        "Webview.getSize": Failure<3, "empty webwidget">;
        "Webview.getScreenNumber": Failure<3, "empty webshellwidget"> | Failure<3, "empty screen">;
        "Webview.isMaximize": Failure<3, "empty webshellwidget">;
        "Webview.isMinimize": Failure<3, "empty webshellwidget">;
        "Webview.isFullScreen": Failure<3, "empty webshellwidget">;
        "Webview.setWindowFlags": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters."> | Failure<1, "missing required parameters.">;
        "Webview.setWindowFlag": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setAttribute": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setRoundFillColor": Failure<3, "empty webwidget">;
        "Webview.setDisableScrollBar": Failure<3, "empty webwidget">;
        "Webview.setDisableXScrollBar": Failure<3, "empty webwidget">;
        "Webview.setDisableYScrollBar": Failure<3, "empty webwidget">;
        "Webview.getGeometry": Failure<3, "empty webwidget">;
        "Webview.setGeometry": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setSize": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setDragArea": Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.clearDragArea": Failure<3, "empty webwidget">;
        "Webview.setBlackDragArea": Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.clearBlackDragArea": Failure<3, "empty webwidget">;
        "Webview.setMaximize": Failure<3, "empty webshellwidget">;
        "Webview.setMinimize": Failure<3, "empty webshellwidget">;
        "Webview.setRestore": Failure<3, "empty webshellwidget">;
        "Webview.setFullScreen": Failure<3, "empty webshellwidget">;
        "Webview.setMinimumSize": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setMaximumSize": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setMinimumWidth": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setMinimumHeight": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setMaximumWidth": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.setMaximumHeight": Failure<3, "empty webshellwidget"> | Failure<1, "wrong parameters.">;
        "Webview.getID": Failure<3, "empty webwidget">;
        "Webview.pageReady": Failure<3, "empty webwidget">;
        "Webview.setDragEnterEnable": Failure<3, "empty webwidget">;
        "Webview.invokeGeneralMethod": Failure<3, "empty webwidget"> | Failure<1, "wrong parameters.">;
        "Webview.invokeGeneralMethodAsync": Failure<3, "empty webwidget"> | Failure<1, "wrong parameters."> | Failure<3, "wrong parameters."> | Failure<3, "PromiseServiceNull">;
        "WebviewMgr.create": Failure<1, "empty view id"> | Failure<1, "wrong parameters."> | Failure<3, "Web Widget Class Not Registered!"> | Failure<3, "Invalid Given Parent Widget"> | Failure<3, "create web widget fail!"> | Failure<3, "empty handle.">;
        "WebviewMgr.getWebview": Failure<1, "wrong parameters."> | Failure<3, "empty view id"> | Failure<3, "empty pBrowser"> | Failure<3, "empty handle.">;
        "Profile.getProfileInfo": Failure<1, "Browser is not in browser group.">;
        "Profile.getBrowserTraceId": Failure<1, "Browser is not in browser group.">;
        "Profile.getBrowserTraceInfo": Failure<1, "Browser is not in browser group.">;
        "Crypto.c64Encode": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Crypto.md5Data": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "CloudDoc.Orbitapi": Failure<3, "empty handle.">;
        "CloudDoc.getCloudCachedFile": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Get file cache info failed.">;
        "CloudDoc.uploadFile2CloudFolder": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Sync files failed.">;
        "CloudDoc.openCloudFolder": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "open folder failed.">;
        "CloudDoc.getDefaultWorkSpace": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Get default workspace failed.">;
        "CloudDoc.createUploadFileTask": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, "Create upload file task failed.">;
        "CloudDoc.getMyCloudDocumentsLocalPath": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Get my cloud documents local path failed.">;
        "CloudDoc.syncFolder": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Sync folder failed.">;
        "CloudDoc.saveToCloudDir": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Save to cloud dir failed.">;
        "CloudDoc.getRoamingMode": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Get roaming mode failed.">;
        "CloudDoc.changeRoamingMode": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Change roaming mode failed.">;
        "CloudDoc.getPersonalPrivateGroup": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Get personal private group failed.">;
        "CloudDoc.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "CloudDoc.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "CloudDoc.dispatchEvent": Failure<3, "Event service error.">;
        "CloudDoc.getAllEventInfo": Failure<3, "Event service error.">;
        "SettingsManager.settings": Failure<1, "Format is illegal."> | Failure<1, "missing required parameters."> | Failure<1, "Path is illegal."> | Failure<3, "empty handle.">;
        "Utils.setTextToClipboard": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "empty handle.">;
        "Utils.getClipboardText": Failure<3, "Permission denied."> | Failure<3, "empty handle.">;
        "Utils.setImageToClipboard": Failure<1, "wrong parameters."> | Failure<3, "empty handle."> | Failure<1, "missing required parameters."> | Failure<3, "Path is illegal."> | Failure<3, `${string} is not an image`>;
        "Utils.getPrimaryScreenGeometry": Failure<3, "empty handle.">;
        "Utils.getAllScreenGeometry": Failure<3, "empty handle.">;
        "Utils.getCurrentScreenGeometry": Failure<3, "empty handle.">;
        "Utils.pickColor": Failure<1, "wrong parameters."> | Failure<1, "missing required parameters.">;
        "Utils.getPictureFilepath": Failure<1, "wrong parameters.">;
        "Utils.startDetach": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, `${string} is not existed`> | Failure<3, "Too many launches.">;
        "Utils.getSnapperColor": Failure<3, "Permission denied."> | Failure<1, "wrong parameters."> | Failure<1, "missing required parameters.">;
        "Utils.getParamExtra": Failure<1, "wrong parameters.">;
        "Utils.inBlackDownloadDir": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Utils.getCsrf": Failure<3, "Permission denied."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login">;
        "Product.isPDFStandAlone": never;
        "Product.getProductString": never;
        "Product.getConfigString": never;
        "Product.getConfigInt": never;
        "Product.language": never;
        "Product.getAppVersionInfo": never;
        "Tools.openUrl": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, "Too many launches.">;
        "Tools.openInnerUrl": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, "Too many launches."> | Failure<3, "create web widget fail!">;
        "Tools.getDomainUrl": Failure<3, "empty handle."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Tools.launchProcessByNova": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, `${string} is not existed`> | Failure<3, "Too many launches.">;
        "Tools.getIntranetType": Failure<3, "empty handle.">;
        "Tools.compress": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<1, "Path is empty."> | Failure<3, "New path is illegal."> | Failure<3, `${string} exists already.`> | Failure<3, `${string} is not existed`> | Failure<3, `${string} can't be packed.`> | Failure<3, `${string} has too many entries.`> | Failure<3, `${string} can't be written.`> | Failure<3, `No space is left for ${string}.`> | Failure<3, "PromiseServiceNull">;
        "Tools.decompress": Failure<1, "Path is empty."> | Failure<1, "wrong parameters."> | Failure<3, "Path is illegal."> | Failure<3, "New path is illegal."> | Failure<3, `${string} is damaged.`> | Failure<3, `${string} can't be unpacked.`> | Failure<3, `${string} is encrypted.`> | Failure<3, `${string} has too many entries.`> | Failure<3, `${string} is too large.`> | Failure<3, `${string} exists already.`> | Failure<3, `${string} can't be written.`> | Failure<3, `No space is left for ${string}.`> | Failure<3, "PromiseServiceNull">;
        "Tools.showConfirmDlg": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Tools.sendMail": Failure<1, "wrong parameters."> | Failure<1, "missing required parameters."> | Failure<3, "Permission denied."> | Failure<3, "Too many launches.">;
        "Event.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Event.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Event.dispatchEvent": Failure<3, "Event service error.">;
        "Event.getAllEventInfo": Failure<3, "Event service error.">;
        "Payment.open": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, "Purchase service error."> | Failure<3, "PromiseServiceNull"> | Failure<3, "User not login"> | Failure<3, "Another purchase is open."> | Failure<3, "The purchase page can not be loaded.">;
        "Skin.addSkinChangeListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Skin.removeSkinChangeListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Skin.getCurrentSkinName": never;
        "Skin.switchSkin": Failure<1, "empty skin name param"> | Failure<3, "skin is nullptr"> | Failure<3, "switch skin failed">;
        "Skin.getSkinHintConfig": Failure<1, "empty config json obj">;
        "Skin.getSkinGradientConfig": Failure<1, "empty config json obj">;
        "Skin.getSkinColorConfig": Failure<1, "empty config json obj">;
        "Skin.getSkinConfig": Failure<1, "empty config json obj">;
        "Skin.getFileTypeIconInfo": Failure<3, "empty fileFilter"> | Failure<1, "empty fileIdentifyList">;
        "Skin.getSkinIconPathInfo": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Skin.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Skin.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Skin.dispatchEvent": Failure<3, "Event service error.">;
        "Skin.getAllEventInfo": Failure<3, "Event service error.">;
        "Account.Privilege": Failure<3, "empty handle.">;
        "Account.login": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Account.logout": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<1, "missing required parameters.">;
        "Account.upgradeMember": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Account.addLoginListener": Failure<3, "empty handle."> | Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.removeLoginListener": Failure<3, "empty handle."> | Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.addLogoutListener": Failure<3, "empty handle."> | Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.removeLogoutListener": Failure<3, "empty handle."> | Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.addUserInfoChangedListener": Failure<3, "empty handle."> | Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.removeUserInfoChangedListener": Failure<3, "empty handle."> | Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.isLoggedIn": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.getUserId": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.getUserInfo": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.getMemberInfo": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.getCompanyInfo": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.getAccountListInfo": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.isNovaMember": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.isFolioMember": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.isSuperMember": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.isCompanyMember": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.isMultiAccount": Failure<3, "empty handle."> | Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.dispatchEvent": Failure<3, "Event service error.">;
        "Account.getAllEventInfo": Failure<3, "Event service error.">;
        "CloudAdapter.commonRequest": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Common request failed.">;
        "CloudAdapter.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "CloudAdapter.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "CloudAdapter.dispatchEvent": Failure<3, "Event service error.">;
        "CloudAdapter.getAllEventInfo": Failure<3, "Event service error.">;
        "AiDocsChat.registerQACallback": Failure<3, "pThis is null"> | Failure<3, "handle is null"> | Failure<1, "Invalid argument"> | Failure<3, "Panel not Found">;
        "AiDocsChat.qaNotify": Failure<3, "pThis is null"> | Failure<3, "handle is null"> | Failure<1, "Invalid argument"> | Failure<3, "Panel not Found"> | Failure<3, `Failed invoke method: ${string}`>;
        "SyncFolder.addNotifyListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "SyncFolder.removeNotifyListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "SyncFolder.openSyncFolderListDlg": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, "Sync folder dialogs are not available."> | Failure<3, "Promise Service error.">;
        "SyncFolder.showSyncFolderPathWidget": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, "Sync folder dialogs are not available."> | Failure<3, "Promise Service error.">;
        "SyncFolder.openCloudSpacePage": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, "Sync folder dialogs are not available."> | Failure<3, "Promise Service error.">;
        "SyncFolder.getFolderSize": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.getSupportSelectSyncFolderMode": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.syncFolderPrecheck": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.desktopSyncPreCheck": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.syncToLocalPrecheck": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.setPersonalDesktopSync": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.cancelPersonalDesktopSync": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.getIsNeedRepairOverlayIcon": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.doRepairOverlayIcon": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.syncFolder": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.syncToLocal": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.changeSyncPath": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.checkSyncFolderPathValid": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.checkSyncFolderValid": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.getRecentFileList": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.scanFolder": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "wrong parameters."> | Failure<3, "New path is illegal."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.getSyncFolderCount": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, `Sync folder request failed: ${string}.`>;
        "SyncFolder.showNovaBox": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Sync folder dialogs are not available."> | Failure<3, "Promise Service error.">;
        "SyncFolder.getUserTypeList": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login">;
        "SyncFolder.showCompanyPrivilegeDlg": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, "Sync folder dialogs are not available."> | Failure<3, "Promise Service error.">;
        "SyncFolder.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "SyncFolder.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "SyncFolder.dispatchEvent": Failure<3, "Event service error.">;
        "SyncFolder.getAllEventInfo": Failure<3, "Event service error.">;
        "WebDocsControl.notifySetupFinished": Failure<3, "pThis is null"> | Failure<3, "handle is null"> | Failure<3, "empty core app."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Update classify label status failed.">;
        "WebDocsControl.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "WebDocsControl.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "WebDocsControl.dispatchEvent": Failure<3, "Event service error.">;
        "WebDocsControl.getAllEventInfo": Failure<3, "Event service error.">;
        "KContract.registerCallback": Failure<3, "pThis is null"> | Failure<3, "handle is null"> | Failure<1, "Invalid argument"> | Failure<3, "Panel not Found">;
        "KContract.panelNotify": Failure<3, "pThis is null"> | Failure<3, "handle is null"> | Failure<1, "Invalid argument"> | Failure<3, "Panel not Found"> | Failure<3, `Failed invoke method: ${string}`>;
        "ByteBufferManager.ByteBuffer.data": never;
        "ByteBufferManager.ByteBuffer.getSize": never;
        "ByteBufferManager.ByteBuffer.setSize": Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<1, "Size is illegal."> | Failure<3, "Too many bytes in buffers.">;
        "FileSystem.File.exists": never;
        "FileSystem.File.remove": Failure<3, "illegal path">;
        "FileSystem.File.size": Failure<3, "empty path"> | Failure<3, "invalid path">;
        "PluginManager.Plugin.load": Failure<3, "invalid plugin"> | Failure<1, "wrong parameters.">;
        "PluginManager.Plugin.getProp": Failure<3, "invalid plugin">;
        "PluginManager.Plugin.resourceFilePath": Failure<3, "invalid plugin"> | Failure<3, "plugin is not ready">;
        "PluginManager.Plugin.frameworkFilePath": Failure<3, "invalid plugin"> | Failure<3, "plugin is not ready">;
        "CloudDoc.Orbitapi.commonRequest": Failure<3, "Cloud service error."> | Failure<3, "Get account SDK error."> | Failure<3, "User not login"> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters."> | Failure<3, "Permission denied."> | Failure<3, "Cloud SDK error."> | Failure<3, `Call ${string} failed.`> | Failure<3, "Promise Service error."> | Failure<3, "Common request failed."> | Failure<3, "Common request timed out.">;
        "CloudDoc.UploadFileTask.start": Failure<3, "task is null."> | Failure<3, "task start failed.">;
        "CloudDoc.UploadFileTask.cancel": Failure<3, "task is null."> | Failure<3, "task cancel failed.">;
        "CloudDoc.UploadFileTask.restart": Failure<3, "task is null."> | Failure<3, "task restart failed.">;
        "CloudDoc.UploadFileTask.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "CloudDoc.UploadFileTask.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "CloudDoc.UploadFileTask.dispatchEvent": Failure<3, "Event service error.">;
        "CloudDoc.UploadFileTask.getAllEventInfo": Failure<3, "Event service error.">;
        "SettingsManager.Settings.setValue": Failure<1, "missing required parameters."> | Failure<3, "Setting is invalid."> | Failure<1, "wrong parameters.">;
        "SettingsManager.Settings.getValue": Failure<1, "missing required parameters."> | Failure<3, "Setting is invalid."> | Failure<1, "wrong parameters.">;
        "Account.Privilege.getPrivileges": Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized.">;
        "Account.Privilege.hasPrivilege": Failure<3, "Accountsdk is not initialized."> | Failure<3, "Current account is not initialized."> | Failure<1, "missing required parameters."> | Failure<1, "wrong parameters.">;
        "Account.Privilege.addEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.Privilege.removeEventListener": Failure<3, "Event service error."> | Failure<1, "wrong parameters.">;
        "Account.Privilege.dispatchEvent": Failure<3, "Event service error.">;
        "Account.Privilege.getAllEventInfo": Failure<3, "Event service error.">;
    }

    /**
     * The failures of one member, so that a `catch` can tell them apart by `code` and `msg`.
     *
     * @example
     * const failure = error as NovaExtension.FailureOf<"FileSystem.copy">;
     * if (failure.code === 1)
     *     console.log(failure.msg);
     */
    type FailureOf<Member extends keyof Failures> = Failures[Member];
}

declare namespace NovaExtension {
    /**
     * Remote feature configuration, read and watched. A server decides it; what is here is what came from there last,
     * so nothing waits. Values have names and hold anything that JSON can spell. Groups have one value for each
     * context: for the user's language, version, share of a staged introduction.
     *
     * @remarks one object, shared by all pages
     */
    interface Hive {
        /**
         * Returns a value, undefined where there is none, and has the function called with each change until the page
         * goes. A page can have 1,000 watches.
         *
         * @param options the value
         * @param callback is called each time that the value is another one
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "too many watches."
         */
        addDataWatch(options: NovaExtension.Hive.DataKey, callback: (report: NovaExtension.Hive.ConfigChange) => void): Answer<any>;
        /**
         * Returns a value.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        getData(options: NovaExtension.Hive.DataRequest): Answer<any>;
        /**
         * Returns the value that a group has for a context.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        getGroupMatchValue(options: NovaExtension.Hive.GroupRequest): Answer<any>;
        /**
         * Returns which configuration there is, and what is in it.
         *
         * @throws 3 "Remote config service error."
         */
        getHiveConfig(options?: NovaExtension.Hive.Prefix): Answer<NovaExtension.Hive.Summary>;
        /**
         * Returns a context as groups are decided with it: the page's facts, as strings, and those that the suite
         * knows, such as `language`, `version` and `userId`, which a page can not replace.
         *
         * @throws 3 "Remote config service error."
         */
        translateContext(options?: NovaExtension.Hive.Context): Answer<Record<string, string>>;
        /**
         * Returns the name of the field in which an object among the values has its text for the user's language: the
         * first of `title_nb_NO`, `title_nb` and `title` that it has. Where it has none of them, or there is no such
         * object, the name as it was given.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         */
        i18nFieldName(options: NovaExtension.Hive.FieldName): Answer<string>;
        /**
         * Returns the value that a group has for a context, and has the function called with each change until the page
         * goes. A page can have 1,000 watches.
         *
         * @param options the group and the context
         * @param callback is called each time that the group's value is another one
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "too many watches."
         */
        subscribeGroupMatchValue(options: NovaExtension.Hive.GroupRequest, callback: (report: NovaExtension.Hive.GroupChange) => void): Answer<any>;
    }
}

declare namespace NovaExtension.Hive {
    interface ConfigChange {
        /** its name */
        key: string;
        /** the value that there is now; undefined where there is none */
        value: any;
        /** the one that the function was last told of */
        previousValue: any;
    }
    interface Context {
        /** facts by their names, such as `{ plan: "team" }` */
        context?: Readonly<Record<string, string>> | undefined;
    }
    interface DataKey {
        /** the value's name */
        key: string;
    }
    interface DataRequest {
        /** the value's name */
        key: string;
        /** what is returned where there is no value */
        defaultValue?: unknown | undefined;
    }
    interface FieldName {
        /** the value's name */
        key: string;
        /** the name of the field without a language */
        field: string;
    }
    interface GroupChange {
        /** its name */
        group: string;
        /** the value that it has now; undefined where it has none */
        value: any;
        /** the one that the function was last told of */
        previousValue: any;
    }
    interface GroupRequest {
        /** the group's name */
        group: string;
        /** facts by their names, such as `{ plan: "team" }` */
        context?: Readonly<Record<string, string>> | undefined;
        /** what is returned where the group has no value */
        defaultValue?: unknown | undefined;
    }
    interface Prefix {
        /** returns only the keys and groups whose names begin with this */
        prefix?: string | undefined;
    }
    interface Summary {
        /** of the configuration; empty while there is none */
        version: string;
        /** when it came from the server, in milliseconds since 1970 (UTC); 0 while there is none */
        updateTime: Int64;
        /** the names of all values, sorted */
        keys: string[];
        /** the names of all groups, sorted */
        groups: string[];
    }
}

declare namespace NovaExtension {
    /**
     * Makes byte buffers.
     *
     * @remarks one object, shared by all pages
     */
    interface ByteBufferManager {
        /**
         * Returns a ByteBuffer. All that there are may hold 1 GiB together: see `setSize`.
         *
         * @param content how many zero bytes, at most 268,435,456; a string, of which the buffer gets the UTF-8; or
         *   bytes, of which it gets a copy
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 1 "Size is illegal."
         * @throws 3 "Too many bytes in buffers."
         * @throws 3 "empty handle."
         */
        create(content: number | string | Bytes): NovaExtension.ByteBufferManager.ByteBuffer;
    }
}

declare namespace NovaExtension {
    /**
     * Guarded access to local files and to the suite's file dialogs. Where a member writes or removes, its path must be
     * absolute or begin with an environment variable between percent signs (`%HOME%/a.txt`). A dialog runs until the
     * user has ended it; a page has one at a time, and one that it opens meanwhile is cancelled at once.
     *
     * @remarks one object, shared by all pages
     */
    interface FileSystem {
        /**
         * Returns a File object for a path.
         *
         * @throws 3 "Path is empty."
         * @throws 3 "Path is illegal."
         * @throws 3 "empty handle."
         */
        File(options: NovaExtension.FileSystem.PathOptions): NovaExtension.FileSystem.File;
        /** Returns whether something has that path. */
        exists(path: string): Answer<boolean>;
        /**
         * Copies a file. Returns whether it was copied: `false` when something is there already and may not be
         * replaced, or the system refused. A file that is replaced stays as it was until the copy is whole.
         *
         * @throws 3 "Path is empty."
         * @throws 1 "wrong parameters."
         * @throws 3 "Path is illegal."
         * @throws 3 "New path is illegal."
         * @throws 3 "override existing file failed"
         */
        copy(options: NovaExtension.FileSystem.CopyOptions): Answer<boolean>;
        /** Returns the suite's data directory. */
        officeData(): Answer<string>;
        /** Returns the suite's home directory. */
        officeHome(): Answer<string>;
        /** Returns the directory for temporary files. */
        tempPath(): Answer<string>;
        /** Returns the user's desktop directory, empty when the system has none. */
        desktopPath(): Answer<string>;
        /** Returns the user's home directory. */
        homePath(): Answer<string>;
        /** Returns the user's directory for documents, empty when the system has none. */
        documentsPath(): Answer<string>;
        /**
         * Shows a directory, or a file in it, in the desktop's file manager. Returns whether that was started.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "%1 is not existed"
         * @throws 3 "%1 is not dir"
         * @throws 3 "file %1 is not exists"
         */
        openLocalLocation(options: NovaExtension.FileSystem.PlaceOptions): Answer<boolean>;
        /**
         * Returns an empty string: Linux has no work directory of libraries.
         *
         * @throws 1 "missing required parameters."
         */
        getDllWorkPath(name: string): Answer<string>;
        /** Returns the user's directory for downloads, empty when the system has none. */
        downloadPath(): Answer<string>;
        /**
         * Has the user choose a directory. Returns its path, empty when cancelled.
         *
         * @throws 1 "missing required parameters."
         */
        selectLocalFolder(options: NovaExtension.FileSystem.FolderDialogOptions): Answer<string>;
        /**
         * Has the user choose files or folders, on this machine or in the cloud. Without a choice `files` is empty.
         *
         * @throws 3 "inputBox is null"
         */
        selectFolderx(options?: NovaExtension.FileSystem.CloudFileDialogOptions): Answer<NovaExtension.FileSystem.CloudFileChoice>;
        /**
         * Makes a directory with all directories above it. Returns whether the system did it.
         *
         * @throws 1 "Path is empty."
         * @throws 3 "New path is illegal."
         * @throws 3 "the directory already exist"
         */
        mkpath(path: string): Answer<boolean>;
        /**
         * Removes a directory and all that is in it; of a link to a directory the link. Returns whether all of it is
         * gone. The home directory, directories closed to pages, and those that hold one of them are refused as
         * illegal.
         *
         * @throws 1 "Path is empty."
         * @throws 3 "New path is illegal."
         * @throws 1 "%1 is not existed"
         * @throws 1 "%1 is not dir"
         */
        remove(path: string): Answer<boolean>;
        /**
         * Has the desktop open a file with the program for it.
         *
         * @throws 3 "Path is empty."
         * @throws 3 "%1 is not existed"
         * @throws 3 "%1 is not file"
         * @throws 3 "Failed to open file : %1 "
         */
        open(path: string): Answer<undefined>;
        /**
         * Returns whether the file can be opened for writing, so no other program holds it locked.
         *
         * @throws 1 "%1 is not existed"
         */
        getFileStatus(path: string): Answer<boolean>;
        /** Has the user choose a name to save to. Returns it, empty when cancelled. */
        getWritableSaveFileName(options?: NovaExtension.FileSystem.FileDialogOptions): Answer<string>;
        /**
         * Has the user choose a directory. Returns its path, empty when cancelled.
         *
         * @throws 1 "%1 is not existed"
         * @throws 1 "%1 is not dir"
         */
        getExistingDirectory(options: NovaExtension.FileSystem.OpenDialogOptions): Answer<string>;
        /**
         * Has the user choose existing files. Returns their paths, none when cancelled.
         *
         * @throws 1 "%1 is not existed"
         * @throws 1 "%1 is not dir"
         */
        getOpenFileNames(options: NovaExtension.FileSystem.OpenDialogOptions): Answer<string[]>;
        /**
         * Has the user choose an existing file. Returns its path, empty when cancelled.
         *
         * @throws 1 "%1 is not existed"
         * @throws 1 "%1 is not dir"
         */
        getOpenFileName(options: NovaExtension.FileSystem.OpenDialogOptions): Answer<string>;
        /**
         * Shows the suite's file panel. Returns what it returns, `{}` when cancelled.
         *
         * @param options what the panel is to show; it knows which keys
         * @throws 3 "empty handle"
         * @throws 1 "wrong parameters."
         */
        showSelectFilePanel(options?: unknown): Answer<Record<string, any>>;
        /**
         * Resolves with the MD5 of a file's content, 32 lower-case hexadecimal digits. A file that can not be read, is
         * no regular file, or changes meanwhile is rejected.
         *
         * @throws rejects with 3 "Path is empty."
         * @throws rejects with 3 "%1 is not existed"
         * @throws rejects with 3 "%1 can't been opened"
         * @throws 3 "PromiseServiceNull"
         */
        getFileMd5(path: string): Promise<string>;
        /** Returns whether the suite may use a file; `false` as well when it guards no access. */
        startAccess(options?: NovaExtension.FileSystem.AccessOptions): Answer<boolean>;
        /** Returns whether the path is that of a directory. */
        isDir(path: string): Answer<boolean>;
        /**
         * Returns whether the path is that of a directory that can be written to and is neither closed to pages nor in
         * the plugin pool.
         */
        isDirWritable(path: string): Answer<boolean>;
    }
}

declare namespace NovaExtension.FileSystem {
    interface AccessOptions {
        /** the file */
        path?: string | undefined;
        /**
         * ask the user where access is not granted yet
         *
         * @default true
         */
        requestIfNoPermission?: boolean | undefined;
        /**
         * what for, as the suite numbers it
         *
         * @default 2
         */
        accessType?: number | undefined;
        /**
         * show the user that access was refused
         *
         * @default true
         */
        showRequestFailedTip?: boolean | undefined;
    }
    interface CloudFileChoice {
        /** paths on this machine */
        files: string[];
        /** a path in the cloud */
        cloudFilePath: any;
        /** the groups of what was chosen */
        cloudGroupIds: any;
        /** the folder that it is in */
        cloudParentId: any;
        /** the file that it would replace */
        duplicateCloudFileId: any;
        /** what to do with that file */
        duplicateAction: any;
    }
    interface CloudFileDialogOptions {
        /** the dialog's title */
        caption?: string | undefined;
        /** the text of the button that confirms */
        confirmButton?: string | undefined;
        /** the directory to begin in */
        dir?: string | undefined;
        /** the file name to begin with */
        initialName?: string | undefined;
        /** which files are shown */
        filter?: string | undefined;
        /**
         * more than one may be chosen
         *
         * @default false
         */
        allowMultiSel?: boolean | undefined;
        /**
         * begin in the cloud
         *
         * @default false
         */
        cloudAsInitial?: boolean | undefined;
        /**
         * for a command of the cloud's
         *
         * @default false
         */
        isCloudCmdTag?: boolean | undefined;
        /**
         * show recent files
         *
         * @default false
         */
        isShowRecentTab?: boolean | undefined;
        /**
         * show the cloud
         *
         * @default false
         */
        isShowCloudTab?: boolean | undefined;
        /**
         * show shared folders
         *
         * @default false
         */
        isShowShareFolderTab?: boolean | undefined;
        /**
         * the cloud's root may be chosen
         *
         * @default false
         */
        allowSelRoot?: boolean | undefined;
        /**
         * a new file of the cloud is saved
         *
         * @default false
         */
        saveNewCloudFile?: boolean | undefined;
        /**
         * directories are chosen
         *
         * @default false
         */
        isOpenDirDialog?: boolean | undefined;
        /**
         * return the path of a local copy
         *
         * @default false
         */
        returnFilePath?: boolean | undefined;
        /**
         * do not show this machine
         *
         * @default false
         */
        isHideLocalTab?: boolean | undefined;
        /**
         * show favourites
         *
         * @default false
         */
        isShowFavoriteTab?: boolean | undefined;
        /**
         * ask before a file is replaced
         *
         * @default false
         */
        isConfirmOverwrite?: boolean | undefined;
        /**
         * show the company's cloud
         *
         * @default false
         */
        isShowCompanyCloudTab?: boolean | undefined;
        /**
         * choose what is there, not where to save
         *
         * @default false
         */
        isOpenDialog?: boolean | undefined;
    }
    interface CopyOptions {
        /** an existing regular file, of a kind that pages may copy */
        path: string;
        /** where to */
        newPath: string;
        /**
         * replace what is there
         *
         * @default false
         */
        overwrite?: boolean | undefined;
    }
    interface FileDialogOptions {
        /** the dialog's title */
        caption?: string | undefined;
        /** the directory to begin in */
        dir?: string | undefined;
        /** which files are shown: `"Images (*.png *.jpg);;Text (*.txt)"` */
        filter?: string | undefined;
    }
    interface FolderDialogOptions {
        /** the dialog's title */
        caption?: string | undefined;
        /** the directory to begin in */
        dir: string;
    }
    interface OpenDialogOptions {
        /** the dialog's title */
        caption?: string | undefined;
        /** the directory to begin in, which must exist */
        dir: string;
        /** which files are shown */
        filter?: string | undefined;
    }
    interface PathOptions {
        /** an existing regular file */
        path: string;
    }
    interface PlaceOptions {
        /** the directory */
        path: string;
        /** a file in it */
        fileName?: string | undefined;
    }
}

declare namespace NovaExtension {
    /**
     * Downloads and HTTP requests. Each server must be permitted to the page, at every redirect; an address that is not
     * public (of this machine, a local network, a special use) must be so itself. Certificates are verified. There are
     * no cookies, no cache and no credentials but the page's own headers. A page has at most 6 requests and downloads
     * under way at once, all pages 32; as many as 256 of a page wait. They end with the page. Functions are called
     * after the member has returned.
     *
     * @remarks one object, shared by all pages
     */
    interface Network {
        /** Whether this machine is in a network: an interface that is up has an address other machines can reach. */
        isConnected(): Answer<boolean>;
        /**
         * Downloads a file. It is written beside its path and put there when it is whole and on disk; until then what
         * is at the path stays as it is. A program that is downloaded can not be run.
         *
         * @param callback called with the progress, at most 10 times a second, and once with the end
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 1 "Path is empty."
         * @throws 1 "URL is illegal."
         * @throws 1 "Headers are illegal."
         * @throws 3 "Permission denied."
         * @throws 3 "Path is illegal."
         * @throws 3 "File exists."
         * @throws 1 "Request id is in use."
         * @throws 3 "Too many requests."
         */
        download(options: NovaExtension.Network.DownloadOptions, callback?: (report: NovaExtension.Network.DownloadReport) => void): Answer<NovaExtension.Network.StartedRequest>;
        /**
         * Ends a download. Returns whether it was under way; its function is called with the state `canceled` then.
         *
         * @param requestId of a download of this page
         * @throws 1 "wrong parameters."
         * @throws 1 "missing required parameters."
         */
        cancelDownload(requestId: string): Answer<boolean>;
        /**
         * Sends an HTTP request. At most 20 redirects are followed, as the web's `fetch` follows them, none from https
         * to http; Authorization does not go to another server.
         *
         * @param callback called once, with the response or the error
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 1 "URL is illegal."
         * @throws 1 "Method is illegal."
         * @throws 1 "Headers are illegal."
         * @throws 1 "Body is illegal."
         * @throws 3 "Permission denied."
         * @throws 1 "Request id is in use."
         * @throws 3 "Too many requests."
         */
        httpRequest(options: NovaExtension.Network.RequestOptions, callback?: (report: NovaExtension.Network.HttpReport) => void): Answer<NovaExtension.Network.StartedRequest>;
        /**
         * Sends an HTTP request as `httpRequest` does; the promise resolves with a response of any status.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 1 "URL is illegal."
         * @throws 1 "Method is illegal."
         * @throws 1 "Headers are illegal."
         * @throws 1 "Body is illegal."
         * @throws 3 "Permission denied."
         * @throws 1 "Request id is in use."
         * @throws 3 "Too many requests."
         * @throws 3 "PromiseServiceNull"
         * @throws rejects with 3 "Permission denied."
         * @throws rejects with 3 "Host not found."
         * @throws rejects with 3 "Connection failed."
         * @throws rejects with 3 "TLS failed."
         * @throws rejects with 3 "Timed out."
         * @throws rejects with 3 "Too many redirects."
         * @throws rejects with 3 "Redirect is illegal."
         * @throws rejects with 3 "Response is broken."
         * @throws rejects with 3 "Response is too large."
         * @throws rejects with 3 "Canceled."
         */
        fetch(options: NovaExtension.Network.RequestOptions): Promise<NovaExtension.Network.HttpResponse>;
        /**
         * Ends a request of `httpRequest` or `fetch`, which fails with "Canceled.". Returns whether it was under way.
         *
         * @param requestId of a request of this page
         * @throws 1 "wrong parameters."
         * @throws 1 "missing required parameters."
         */
        abortRequest(requestId: string): Answer<boolean>;
        /** An id that no other request has or will have. */
        genarateRequestId(): Answer<string>;
    }
}

declare namespace NovaExtension.Network {
    interface DownloadOptions {
        /** http or https, without a user's name and password */
        url: string;
        /** the file; its directory must be there */
        path: string;
        /**
         * replace a file that is there
         *
         * @default false
         */
        overwrite?: boolean | undefined;
        /**
         * go on where an earlier download to this path from this URL ended, and keep for a later one what has come if
         * this one fails or is canceled
         *
         * @default false
         */
        resume?: boolean | undefined;
        /** as of `fetch`; neither Range nor If-Range */
        headers?: Readonly<Record<string, string>> | undefined;
        /**
         * as of `fetch`
         *
         * @default 30000
         */
        timeoutMs?: number | undefined;
        /** the largest file that is taken; without it there is no limit */
        maxBytes?: number | undefined;
        /** as of `fetch` */
        requestId?: string | undefined;
    }
    interface DownloadReport {
        /** of the download */
        requestId: string;
        /** each but `progress` is the last one */
        state: "progress" | "finished" | "failed" | "canceled";
        /** so much of the file is there, with what was resumed */
        receivedBytes: number;
        /** the size of the whole file, where the server says it */
        totalBytes?: number;
        /** so much was there from an earlier download */
        resumedBytes: number;
        /** the file, absolute; it is there when the download has finished */
        path: string;
        /** the status of the response, where there was one */
        httpStatus?: number;
        /** with `failed` and `canceled` */
        error?: "Permission denied." | "Host not found." | "Connection failed." | "TLS failed." | "Timed out." | "Too many redirects." | "Redirect is illegal." | "Response is broken." | "Response is too large." | "Status is no success." | "File can not be written." | "Disk is full." | "File exists." | "Canceled.";
    }
    interface HttpReport {
        /** of the request */
        requestId: string;
        /** whether there is a response, with a status from 200 to 299 */
        ok: boolean;
        /** why there is no response; what follows is there without it only */
        error?: "Permission denied." | "Host not found." | "Connection failed." | "TLS failed." | "Timed out." | "Too many redirects." | "Redirect is illegal." | "Response is broken." | "Response is too large." | "Status is no success." | "File can not be written." | "Disk is full." | "File exists." | "Canceled.";
        /** such as 200 */
        status?: number;
        /** such as "OK" */
        statusText?: string;
        /** as in the response of `fetch` */
        url?: string;
        /** the same */
        redirected?: boolean;
        /** the same */
        headers?: Record<string, string>;
        /** the same */
        body?: string;
        /** the same */
        bytes?: Uint8Array;
    }
    interface HttpResponse {
        /** of the request */
        requestId: string;
        /** whether the status is one from 200 to 299 */
        ok: boolean;
        /** such as 200 */
        status: number;
        /** such as "OK" */
        statusText: string;
        /** where the response is from, after redirects */
        url: string;
        /** whether there were redirects */
        redirected: boolean;
        /** by their names in lower case, several of one name joined with ", "; without Set-Cookie */
        headers: Record<string, string>;
        /** the content, decompressed and read as UTF-8; empty where it is in `bytes` */
        body: string;
        /** the content, decompressed, with the `responseType` `bytes` */
        bytes?: Uint8Array;
    }
    interface RequestOptions {
        /** http or https, without a user's name and password */
        url: string;
        /** any but CONNECT, TRACE and TRACK */
        method?: string | undefined;
        /**
         * at most 100 with 32 KiB; not those that pages may not set with the web's `fetch` either, such as Host,
         * Cookie, Origin and Content-Length
         */
        headers?: Readonly<Record<string, string>> | undefined;
        /** a string, which is sent as UTF-8, or bytes; at most 64 MiB; not with GET and HEAD */
        body?: string | Bytes | undefined;
        /**
         * whether the content is wanted in `body` or in `bytes`
         *
         * @default "text"
         */
        responseType?: "text" | "bytes" | undefined;
        /**
         * the longest time, from 1 to 600000 ms, in which nothing comes or goes; waiting for its turn is not counted
         *
         * @default 30000
         */
        timeoutMs?: number | undefined;
        /**
         * the largest content that is taken, decompressed: from 1 byte to 256 MiB
         *
         * @default 67108864.0
         */
        maxBytes?: number | undefined;
        /** 1 to 128 characters, none that the page has under way; without it a new one */
        requestId?: string | undefined;
    }
    interface StartedRequest {
        /** given by the page, or new */
        requestId: string;
    }
}

declare namespace NovaExtension {
    /**
     * Facts about this installation. What the suite does not know is an empty string.
     *
     * @remarks one object, shared by all pages
     */
    interface Novaoffice {
        /** Returns the suite's version. */
        getNovaVersion(): Answer<string>;
        /** Returns the name of the suite's application that runs. */
        getApplicationName(): Answer<string>;
        /** Returns the identifier of this installation. */
        getGuid(): Answer<string>;
        /** Returns the identifier of this user's installation. */
        getUuid(): Answer<string>;
        /** Returns the identifier of this machine. */
        getHdid(): Answer<string>;
        /** Returns the distribution channel's code. */
        getChannel(): Answer<string>;
        /** Returns the name of this machine in the network. */
        getComputerName(): Answer<string>;
        /** Returns the name under which the operating system runs the suite. */
        getSystemUserName(): Answer<string>;
        /** Returns the directory of this installation. */
        getNovaofficeInstallPath(): Answer<string>;
        /** Returns the display scale, 1 for 96 dots per inch. */
        getCurrentNovaDpi(): Answer<number>;
    }
}

declare namespace NovaExtension {
    /**
     * Posts events to the suite's data collection.
     *
     * @remarks one object, shared by all pages
     */
    interface TelemetrySdk {
        /**
         * Posts an event.
         *
         * @throws 3 "kdcinfo error"
         * @throws 1 "empty event name"
         * @throws 1 "wrong parameters."
         * @throws 1 "empty post content"
         */
        postEvent(options: NovaExtension.TelemetrySdk.TelemetryEvent): Answer<undefined>;
    }
}

declare namespace NovaExtension.TelemetrySdk {
    interface TelemetryEvent {
        /** the event */
        eventName: string;
        /**
         * one event in so many is sent
         *
         * @default 1
         */
        pb?: 1 | 100 | 1000 | undefined;
        /** what it carries */
        postContent: Readonly<Record<string, string>>;
    }
}

declare namespace NovaExtension {
    /**
     * Writes records into the suite's log.
     *
     * @remarks one object, shared by all pages
     */
    interface Log {
        /**
         * Writes a record of what has happened.
         *
         * @throws 1 "missing required parameters."
         */
        logInfo(options: NovaExtension.Log.LogRecord): Answer<undefined>;
        /**
         * Writes a record of what should not have happened.
         *
         * @throws 1 "missing required parameters."
         */
        logWarning(options: NovaExtension.Log.LogRecord): Answer<undefined>;
    }
}

declare namespace NovaExtension.Log {
    interface LogRecord {
        /** who writes */
        moduleName: string;
        /** what is written */
        logStr: string;
    }
}

declare namespace NovaExtension {
    /**
     * Named values that outlive the process, for everybody or for one user.
     *
     * @remarks one object, shared by all pages
     */
    interface ConfigCenter {
        /**
         * Stores a value. Returns whether it was stored.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        setValue(options: NovaExtension.ConfigCenter.WriteOptions): Answer<boolean>;
        /**
         * Returns a stored value.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        value(options: NovaExtension.ConfigCenter.ReadOptions): Answer<any>;
        /**
         * Removes a value. Returns whether there was one and it is gone.
         *
         * @throws 1 "missing required parameters."
         */
        remove(options: NovaExtension.ConfigCenter.KeyOptions): Answer<boolean>;
        /**
         * Returns a stored value, read from the disk again.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        flushRead(options: NovaExtension.ConfigCenter.ReadOptions): Answer<any>;
        /**
         * Stores a value and writes it to the disk. Returns whether the write was accepted.
         *
         * @param callback is called when the value is on the disk, or is not
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        flushWrite(options: NovaExtension.ConfigCenter.WriteOptions, callback?: (report: NovaExtension.ConfigCenter.FlushReport) => void): Answer<boolean>;
        /**
         * Removes a value from the disk. Returns whether the removal was accepted.
         *
         * @param callback is called when the value is gone from the disk, or is not
         * @throws 1 "missing required parameters."
         */
        flushRemove(options: NovaExtension.ConfigCenter.KeyOptions, callback?: (report: NovaExtension.ConfigCenter.FlushReport) => void): Answer<boolean>;
    }
}

declare namespace NovaExtension.ConfigCenter {
    interface FlushReport {
        /** the value's key */
        key: string;
        /** what was written; undefined after a removal */
        value: any;
        /** whether it is on the disk */
        ok: boolean;
    }
    interface KeyOptions {
        /** the value's name */
        key: string;
        /** whose value; without one it is everybody's */
        userId?: string | undefined;
    }
    interface ReadOptions {
        /** the value's name */
        key: string;
        /** whose value; without one it is everybody's */
        userId?: string | undefined;
        /** what is returned where there is no value */
        defaultValue?: unknown | undefined;
    }
    interface WriteOptions {
        /** the value's name */
        key: string;
        /** whose value; without one it is everybody's */
        userId?: string | undefined;
        /** anything but null, a function, a native object or bytes */
        value: unknown;
    }
}

declare namespace NovaExtension {
    /**
     * Remote feature configuration by switch and section: what the server has decided for the signed-in user, and what
     * the user has chosen instead, which is stored.
     *
     * @remarks one object, shared by all pages
     */
    interface CirrusConfig {
        /**
         * Returns whether a switch is on for the user.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 3 "There is no such switch."
         */
        getAuthSwitch(options: NovaExtension.CirrusConfig.SwitchName): Answer<boolean>;
        /**
         * Stores the user's own choice, where the server leaves it to users.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "There is no such switch."
         * @throws 3 "The switch can not be changed."
         */
        setAuthSwitch(options: NovaExtension.CirrusConfig.SwitchChoice): Answer<undefined>;
        /**
         * Returns a value of a section: the user's own, or else the server's.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        getConfigData(options: NovaExtension.CirrusConfig.ConfigRequest): Answer<any>;
        /**
         * Stores a value of the user's own in a section that the server has, or removes it.
         *
         * @throws 3 "Remote config service error."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "The value can not be stored."
         */
        setConfigData(options: NovaExtension.CirrusConfig.ConfigValue): Answer<undefined>;
    }
}

declare namespace NovaExtension.CirrusConfig {
    interface ConfigRequest {
        /** the section */
        section: string;
        /** the value's name in it */
        key: string;
        /** what is returned where there is no value */
        defaultValue?: unknown | undefined;
    }
    interface ConfigValue {
        /** the section */
        section: string;
        /** the value's name in it */
        key: string;
        /** anything that JSON can spell; without one, or with null, the user's own value is removed */
        value?: unknown | undefined;
    }
    interface SwitchChoice {
        /** the switch's name */
        name: string;
        /** whether it is to be on */
        value: boolean;
    }
    interface SwitchName {
        /** the switch's name */
        name: string;
    }
}

declare namespace NovaExtension {
    /**
     * Finds plugins by name.
     *
     * @remarks one object, shared by all pages
     */
    interface PluginManager {
        /**
         * Returns a Plugin object for a plugin of the suite.
         *
         * @param name its name
         * @throws 3 "empty pBrowsersGroup"
         * @throws 3 "plugin manager is null"
         * @throws 3 "invalid plugin"
         * @throws 3 "empty handle."
         */
        getPlugin(name: string): NovaExtension.PluginManager.Plugin;
    }
}

declare namespace NovaExtension {
    /**
     * A view and its window: that of the calling page, of which every page has its own, or another one from
     * `WebviewMgr`. Lengths are in CSS pixels.
     *
     * @remarks one object for each page
     */
    interface Webview {
        /**
         * Adds a listener that is called when the window has been hidden. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        addHideListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the window has been hidden.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        removeHideListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when the window has been destroyed. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        addDestroyListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the window has been destroyed.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        removeDestroyListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when the window has been shown. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        addShowListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the window has been shown.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        removeShowListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when the window has been closed. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        addCloseListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the window has been closed.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        removeCloseListener(callback: (...values: any[]) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when the window has become the active one, or is it no longer. The same
         * function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        addWindowActivateStateListener(callback: (active: boolean) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the window has become the active one, or is it no longer.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        removeWindowActivateStateListener(callback: (active: boolean) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when the window has another size; the second argument is the size before, 0 by
         * 0 when the window is first shown. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        addResizeListener(callback: (size: NovaExtension.Webview.ViewSize, oldSize: NovaExtension.Webview.ViewSize) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the window has another size; the second argument is the size before, 0
         * by 0 when the window is first shown.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        removeResizeListener(callback: (size: NovaExtension.Webview.ViewSize, oldSize: NovaExtension.Webview.ViewSize) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when files are dragged into the view, after `setDragEnterEnable(true)`. The
         * same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        addDragEnterListener(callback: (paths: string[]) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when files are dragged into the view, after `setDragEnterEnable(true)`.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        removeDragEnterListener(callback: (paths: string[]) => void): Answer<undefined>;
        /**
         * Adds a listener that is called when the suite has something to say to the page of the view. The same function
         * is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        addWebviewEventListener(callback: (value: any) => void): Answer<undefined>;
        /**
         * Removes a listener that is called when the suite has something to say to the page of the view.
         *
         * @throws 3 "empty handle."
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        removeWebviewEventListener(callback: (value: any) => void): Answer<undefined>;
        /**
         * Closes the window for good.
         *
         * @throws 3 "empty webshellwidget"
         */
        destroy(): Answer<undefined>;
        /**
         * Shows the view and its window.
         *
         * @throws 3 "empty webwidget"
         */
        show(): Answer<undefined>;
        /**
         * Hides the window.
         *
         * @throws 3 "empty webshellwidget"
         */
        hide(): Answer<undefined>;
        /**
         * Activates the window and gives the keyboard focus to the page.
         *
         * @throws 3 "empty webwidget"
         * @throws 3 "empty webshellwidget"
         */
        takeFocus(): Answer<undefined>;
        /**
         * Makes the window modal for the whole application, or not modal; when it is next shown.
         *
         * @throws 3 "empty webshellwidget"
         */
        setMode(modal: boolean): Answer<undefined>;
        /**
         * Sets whether the user may change the size of the window.
         *
         * @throws 3 "empty webwidget"
         */
        setResizeable(resizeable: boolean): Answer<undefined>;
        /**
         * Sets the title of the window.
         *
         * @throws 3 "empty webshellwidget"
         */
        setWindowTitle(title: string): Answer<undefined>;
        /**
         * Sets the colour behind the page. Returns whether the suite has applied it.
         *
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        setWindowBackgroundColor(options: NovaExtension.Webview.BackgroundColor): Answer<boolean>;
        /**
         * Keeps the window above others, or no longer.
         *
         * @throws 3 "empty webshellwidget"
         */
        setEnableStayOnTop(onTop: boolean): Answer<undefined>;
        /**
         * Returns the size of the view.
         *
         * @throws 3 "empty webwidget"
         */
        getSize(): Answer<NovaExtension.Webview.ViewSize>;
        /**
         * Returns the number of the screen with the window, -1 where it is on none.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 3 "empty screen"
         */
        getScreenNumber(): Answer<number>;
        /**
         * Returns whether the window is maximised.
         *
         * @throws 3 "empty webshellwidget"
         */
        isMaximize(): Answer<boolean>;
        /**
         * Returns whether the window is minimised.
         *
         * @throws 3 "empty webshellwidget"
         */
        isMinimize(): Answer<boolean>;
        /**
         * Returns whether the window fills the screen.
         *
         * @throws 3 "empty webshellwidget"
         */
        isFullScreen(): Answer<boolean>;
        /**
         * Adds to the flags of the window.
         *
         * @param flags values of `Qt::WindowType`, as numbers
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         * @throws 1 "missing required parameters."
         */
        setWindowFlags(flags: readonly number[]): Answer<undefined>;
        /**
         * Sets a flag of the window, or clears it.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setWindowFlag(options: NovaExtension.Webview.FlagChange): Answer<undefined>;
        /**
         * Sets an attribute of the window, or clears it.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setAttribute(options: NovaExtension.Webview.AttributeChange): Answer<undefined>;
        /**
         * Sets the colour outside round corners.
         *
         * @throws 3 "empty webwidget"
         */
        setRoundFillColor(options?: NovaExtension.Webview.RoundFill): Answer<boolean>;
        /**
         * Hides the scroll bars of the page, or shows them.
         *
         * @throws 3 "empty webwidget"
         */
        setDisableScrollBar(disable: boolean): Answer<undefined>;
        /**
         * Hides the horizontal scroll bar of the page, or shows it.
         *
         * @throws 3 "empty webwidget"
         */
        setDisableXScrollBar(disable: boolean): Answer<undefined>;
        /**
         * Hides the vertical scroll bar of the page, or shows it.
         *
         * @throws 3 "empty webwidget"
         */
        setDisableYScrollBar(disable: boolean): Answer<undefined>;
        /**
         * Returns where on the screen the view is.
         *
         * @throws 3 "empty webwidget"
         */
        getGeometry(): Answer<NovaExtension.Webview.ViewPlace>;
        /**
         * Moves the window. Its size stays.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setGeometry(options: NovaExtension.Webview.WindowPlace): Answer<undefined>;
        /**
         * Sets the size of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setSize(options: NovaExtension.Webview.WindowSize): Answer<undefined>;
        /**
         * Adds an area of the view by which the user can drag the window.
         *
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        setDragArea(options: NovaExtension.Webview.DragArea): Answer<undefined>;
        /**
         * Removes all areas of `setDragArea`.
         *
         * @throws 3 "empty webwidget"
         */
        clearDragArea(): Answer<undefined>;
        /**
         * Adds an area by which the window can not be dragged, though it lies in one by which it can.
         *
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        setBlackDragArea(options: NovaExtension.Webview.DragArea): Answer<undefined>;
        /**
         * Removes all areas of `setBlackDragArea`.
         *
         * @throws 3 "empty webwidget"
         */
        clearBlackDragArea(): Answer<undefined>;
        /**
         * Maximises the window, and shows it.
         *
         * @throws 3 "empty webshellwidget"
         */
        setMaximize(): Answer<undefined>;
        /**
         * Minimises the window.
         *
         * @throws 3 "empty webshellwidget"
         */
        setMinimize(): Answer<undefined>;
        /**
         * Shows the window as it was before it was maximised or minimised.
         *
         * @throws 3 "empty webshellwidget"
         */
        setRestore(): Answer<undefined>;
        /**
         * Has the window fill the screen.
         *
         * @throws 3 "empty webshellwidget"
         */
        setFullScreen(): Answer<undefined>;
        /**
         * Sets the smallest size of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setMinimumSize(options: NovaExtension.Webview.MinimumSize): Answer<undefined>;
        /**
         * Sets the largest size of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setMaximumSize(options: NovaExtension.Webview.MaximumSize): Answer<undefined>;
        /**
         * Sets the smallest width of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setMinimumWidth(width: number): Answer<undefined>;
        /**
         * Sets the smallest height of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setMinimumHeight(height: number): Answer<undefined>;
        /**
         * Sets the largest width of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setMaximumWidth(width: number): Answer<undefined>;
        /**
         * Sets the largest height of the window.
         *
         * @throws 3 "empty webshellwidget"
         * @throws 1 "wrong parameters."
         */
        setMaximumHeight(height: number): Answer<undefined>;
        /**
         * Returns the identifier of the view.
         *
         * @throws 3 "empty webwidget"
         */
        getID(): Answer<string>;
        /**
         * Says that the page has finished loading.
         *
         * @throws 3 "empty webwidget"
         */
        pageReady(): Answer<undefined>;
        /**
         * Lets files be dragged into the view, or no longer.
         *
         * @throws 3 "empty webwidget"
         */
        setDragEnterEnable(enable: boolean): Answer<undefined>;
        /**
         * Calls a method of the suite's web widget. Returns whether there is such a method; what that returns,
         * `invokeGeneralMethodAsync` has.
         *
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         */
        invokeGeneralMethod(options: NovaExtension.Webview.GeneralCall): Answer<boolean>;
        /**
         * Calls a method of the suite's web widget when this call has returned. Resolves with what it returns.
         *
         * @throws 3 "empty webwidget"
         * @throws 1 "wrong parameters."
         * @throws rejects with 3 "empty webwidget"
         * @throws rejects with 3 "wrong parameters."
         * @throws 3 "PromiseServiceNull"
         */
        invokeGeneralMethodAsync(options: NovaExtension.Webview.GeneralCall): Promise<any>;
    }
}

declare namespace NovaExtension.Webview {
    interface AttributeChange {
        /** a `Qt::WidgetAttribute`, as its number; none in which Qt keeps its own state */
        attribute: number;
        on: boolean;
    }
    interface BackgroundColor {
        /** red, 0 to 255 */
        r: number;
        /** green, 0 to 255 */
        g: number;
        /** blue, 0 to 255 */
        b: number;
        /** a colour of the theme, in place of the three where the theme has it */
        kdColorName?: string | undefined;
    }
    interface DragArea {
        /** from the left edge of the view */
        x: number;
        /** from the top edge of the view */
        y: number;
        /** the width of the area */
        w: number;
        /** the height of the area */
        h: number;
    }
    interface FlagChange {
        /** a `Qt::WindowType`, as its number */
        flag: number;
        on: boolean;
    }
    interface GeneralCall {
        /** an invokable method of the web widget that takes and returns a value */
        funcName: string;
        /** what it is called with */
        funcParam?: unknown | undefined;
    }
    interface MaximumSize {
        /** the largest width */
        maxw: number;
        /** the largest height */
        maxh: number;
    }
    interface MinimumSize {
        /** the smallest width */
        minw: number;
        /** the smallest height */
        minh: number;
    }
    interface RoundFill {
        /** a colour as `#rrggbb` or by its name in SVG; white in place of one that there is not */
        fillColor?: string | undefined;
    }
    interface ViewPlace {
        /** from the left of the screen to the view */
        x: number;
        /** from the top of the screen to the view */
        y: number;
    }
    interface ViewSize {
        /** the width, in CSS pixels */
        w: number;
        /** the height, in CSS pixels */
        h: number;
    }
    interface WindowPlace {
        /** from the left of the screen to the content of the window */
        x: number;
        /** from the top of the screen to the content of the window */
        y: number;
    }
    interface WindowSize {
        /** the width of its content, without a frame */
        w: number;
        /** the height of its content */
        h: number;
    }
}

declare namespace NovaExtension {
    /**
     * Opens web-view windows and finds them again.
     *
     * @remarks one object, shared by all pages
     */
    interface WebviewMgr {
        /**
         * Opens a window with a new view. The window stays when the page goes.
         *
         * @throws 1 "empty view id"
         * @throws 1 "wrong parameters."
         * @throws 3 "Web Widget Class Not Registered!"
         * @throws 3 "Invalid Given Parent Widget"
         * @throws 3 "create web widget fail!"
         * @throws 3 "empty handle."
         */
        create(options: NovaExtension.WebviewMgr.CreateOptions): NovaExtension.Webview;
        /**
         * Finds a view that is there.
         *
         * @param viewId its identifier
         * @throws 1 "wrong parameters."
         * @throws 3 "empty view id"
         * @throws 3 "empty pBrowser"
         * @throws 3 "empty handle."
         */
        getWebview(viewId: string): NovaExtension.Webview;
    }
}

declare namespace NovaExtension.WebviewMgr {
    interface CreateOptions {
        /** the identifier of the view, which no other one has */
        id: string;
        /**
         * `Dialog`, `Popup`, `Tab`, or the name of a class of windows that the suite knows
         *
         * @default "Dialog"
         */
        windowType?: string | undefined;
        /**
         * a window of the suite owns the new one; in the case of `Tab`, closes with it
         *
         * @default false
         */
        hasParent?: boolean | undefined;
        /**
         * which window of the suite
         *
         * @default "MainWindow"
         */
        parentName?: string | undefined;
        /** how the window behaves */
        attrs?: NovaExtension.WebviewMgr.WindowAttributes | undefined;
        /** its place and size */
        geo?: NovaExtension.WebviewMgr.WindowGeometry | undefined;
        /**
         * show the window at once
         *
         * @default false
         */
        isShow?: boolean | undefined;
        /** an object: what `Utils.getParamExtra` returns to the window's pages */
        paramExtra?: Readonly<Record<string, unknown>> | undefined;
    }
    interface WindowAttributes {
        /**
         * the window is modal for the whole application
         *
         * @default false
         */
        modal?: boolean | undefined;
        /** the user may change the size of the window */
        allowResize?: boolean | undefined;
    }
    interface WindowGeometry {
        /**
         * where on the screen, in CSS pixels, if `x` and `y` are above 0; otherwise the window system decides
         *
         * @default 0
         */
        x?: number | undefined;
        /**
         * see `x`
         *
         * @default 0
         */
        y?: number | undefined;
        /** in CSS pixels; the window's own if it is left out */
        width?: number | undefined;
        /** in CSS pixels; the window's own if it is left out */
        height?: number | undefined;
    }
}

declare namespace NovaExtension {
    /**
     * When the calling page's browser was made and loaded. Times are milliseconds since 1970 (UTC), 0 for what has not
     * happened; durations are milliseconds and never negative.
     *
     * @remarks one object, shared by all pages
     */
    interface Profile {
        /**
         * Returns when the browser was made and the page loaded.
         *
         * @throws 1 "Browser is not in browser group."
         */
        getProfileInfo(): Answer<NovaExtension.Profile.ProfileInfo>;
        /**
         * Returns which browser it is.
         *
         * @throws 1 "Browser is not in browser group."
         */
        getBrowserTraceId(): Answer<NovaExtension.Profile.BrowserTraceId>;
        /**
         * Returns both, and what is known of the session and of the browser's group.
         *
         * @throws 1 "Browser is not in browser group."
         */
        getBrowserTraceInfo(): Answer<NovaExtension.Profile.BrowserTraceInfo>;
    }
}

declare namespace NovaExtension.Profile {
    interface BrowserTraceId {
        /** the process */
        pid: Int64;
        /** the application */
        appid: string;
        /** the browser */
        browserid: string;
    }
    interface BrowserTraceInfo {
        /** the process */
        pid: Int64;
        /** the application */
        appid: string;
        /** the browser */
        browserid: string;
        /** how long loading took */
        c_l: Int64;
        /** how long making the browser took */
        c_cb: Int64;
        /** when loading began */
        c_l_ts: Int64;
        /** when making the browser began */
        c_cb_ts: Int64;
        /** when loading had ended */
        c_lf_ts: Int64;
        /** when the browser was made */
        c_cbf_ts: Int64;
        /** the session */
        sessionid: string;
        /** how long it took until the document was ready */
        c_l_rd: Int64;
        /** when the document was ready */
        c_l_rd_ts: Int64;
        /** the time between the marks of the browser's group */
        c_cb_ld: Int64;
        /** the first of these marks */
        c_cb_ld_ts: Int64;
    }
    interface ProfileInfo {
        /** how long loading took */
        c_l: Int64;
        /** how long making the browser took */
        c_cb: Int64;
        /** when loading began */
        c_l_ts: Int64;
        /** when making the browser began */
        c_cb_ts: Int64;
        /** when loading had ended */
        c_lf_ts: Int64;
        /** when the browser was made */
        c_cbf_ts: Int64;
    }
}

declare namespace NovaExtension {
    /**
     * Text encoding and digests, of strings and of bytes. A string stands for its UTF-8, so one with half a surrogate
     * pair is refused.
     *
     * @remarks one object, shared by all pages
     */
    interface Crypto {
        /**
         * Returns Base64: the alphabet with `+` and `/`, padded with `=`, in one line.
         *
         * @param content what to encode
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        c64Encode(content: string | Bytes): Answer<string>;
        /**
         * Returns the MD5 sum as 32 hexadecimal digits in small letters. It finds accidental changes; whoever wants to
         * can make contents with the same sum.
         *
         * @param content what to sum up
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        md5Data(content: string | Bytes): Answer<string>;
    }
}

declare namespace NovaExtension {
    /**
     * The signed-in user's cloud documents, and what happens to them. Listeners of every page get the events.
     *
     * @remarks one object, shared by all pages
     */
    interface CloudDoc {
        /**
         * Generic requests to the cloud service.
         *
         * @throws 3 "empty handle."
         */
        readonly Orbitapi: NovaExtension.CloudDoc.Orbitapi;
        /**
         * Resolves with the path of the file's local copy.
         *
         * @param cloudPath the cloud file's path or id
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Get file cache info failed."
         */
        getCloudCachedFile(cloudPath: string): Promise<string>;
        /**
         * Uploads files into a cloud folder: any that the user can read and the suite does not close to uploads.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync files failed."
         */
        uploadFile2CloudFolder(options: NovaExtension.CloudDoc.UploadFilesOptions): Promise<NovaExtension.CloudDoc.UploadReport>;
        /**
         * Shows a cloud folder in the suite.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "open folder failed."
         */
        openCloudFolder(options?: NovaExtension.CloudDoc.OpenFolderOptions): Promise<NovaExtension.CloudDoc.ServiceReport>;
        /**
         * Resolves with where the user's documents go when nothing else is said.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Get default workspace failed."
         */
        getDefaultWorkSpace(): Promise<NovaExtension.CloudDoc.Workspace>;
        /**
         * Returns an UploadFileTask, which has not been started yet. A page may upload any file that the user can read
         * and the suite does not close to uploads.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Create upload file task failed."
         */
        createUploadFileTask(options: NovaExtension.CloudDoc.UploadTaskOptions): NovaExtension.CloudDoc.UploadFileTask;
        /**
         * Resolves with the path of the folder in which cloud documents are kept on this machine.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Get my cloud documents local path failed."
         */
        getMyCloudDocumentsLocalPath(): Promise<string>;
        /**
         * Brings the local copy of a cloud folder up to date.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder failed."
         */
        syncFolder(options: NovaExtension.CloudDoc.SyncFolderOptions): Promise<NovaExtension.CloudDoc.ServiceReport>;
        /**
         * Saves a file into a directory of the cloud.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Save to cloud dir failed."
         */
        saveToCloudDir(options: NovaExtension.CloudDoc.SaveOptions): Promise<NovaExtension.CloudDoc.SaveReport>;
        /**
         * Resolves with whether the user's documents follow to other machines by themselves.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Get roaming mode failed."
         */
        getRoamingMode(): Promise<"auto" | "manual">;
        /**
         * Changes the mode. Resolves with the one that is in force now.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Change roaming mode failed."
         */
        changeRoamingMode(mode: "auto" | "manual"): Promise<"auto" | "manual">;
        /**
         * Resolves with the user's own group, as the service describes it.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Get personal private group failed."
         */
        getPersonalPrivateGroup(): Promise<string>;
        /**
         * Adds a listener of the page. The same function is added once. The user has been signed in to the cloud
         * service, or out.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "clouddoc.loginstatus.changed", callback: (payload: NovaExtension.CloudDoc.LoginStatus) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. Another roaming mode is in force.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "clouddoc.roamingmode.changed", callback: (payload: NovaExtension.CloudDoc.RoamingModeChange) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. A document is being brought up to date, or is.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "docCloudSyncStatus", callback: (payload: NovaExtension.CloudDoc.SyncStatus) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. The user has been signed in to the cloud service, or out.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "clouddoc.loginstatus.changed", callback?: (payload: NovaExtension.CloudDoc.LoginStatus) => void): void;
        /**
         * Removes a listener of the page. Another roaming mode is in force.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "clouddoc.roamingmode.changed", callback?: (payload: NovaExtension.CloudDoc.RoamingModeChange) => void): void;
        /**
         * Removes a listener of the page. A document is being brought up to date, or is.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "docCloudSyncStatus", callback?: (payload: NovaExtension.CloudDoc.SyncStatus) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.CloudDoc {
    interface LoginStatus {
        /** whether the user is signed in */
        isLogin: boolean;
    }
    interface OpenFolderOptions {
        /** the cloud folder; this or `fileId` must be given */
        cloudPath?: string | undefined;
        /** the same by its id */
        fileId?: string | undefined;
        /** who opens it */
        openFrom?: string | undefined;
        /** what in the folder is shown first */
        entryIdentifier?: string | undefined;
        /**
         * make the folder where there is none
         *
         * @default false
         */
        createWhenNoExists?: boolean | undefined;
        /** what the service is to know besides */
        extraParam?: Readonly<Record<string, string>> | undefined;
    }
    interface RoamingModeChange {
        /** the mode in force now */
        roamingMode: "auto" | "manual";
    }
    interface SaveOptions {
        /** the directory's group */
        groupId: string;
        /** the target directory */
        fileId: string;
        /** the file's name */
        fname: string;
        /**
         * the kind of file, as the service numbers it
         *
         * @default 0
         */
        itemType?: number | undefined;
        /** what the service is to know besides */
        extraParam?: Readonly<Record<string, string>> | undefined;
    }
    interface SaveReport {
        /** where the file is in the cloud */
        cloudPath: string;
        /** what the service adds */
        extraParam: Record<string, string>;
    }
    interface ServiceReport {
        /** what the service adds */
        extraParam: Record<string, string>;
    }
    interface SyncFolderOptions {
        /** the folder's group */
        groupId: string;
        /** the folder */
        folderId: string;
        /** whose; without one the signed-in user's */
        userId?: string | undefined;
        /**
         * how many levels below the folder; not negative
         *
         * @default 0
         */
        depth?: number | undefined;
        /** what the service is to know besides */
        extraParam?: Readonly<Record<string, string>> | undefined;
    }
    interface SyncStatus {
        /** the document's id */
        fileId?: string;
        /** its path in the cloud */
        cloudPath?: string;
        /** its path on this machine */
        localPath?: string;
        /** how it stands */
        status?: string;
        /** the transfer that is under way */
        taskId?: string;
    }
    interface UploadFilesOptions {
        /** the cloud folder */
        cloudPath: string;
        /** the paths of files on this machine */
        files: readonly string[];
        /**
         * make the folder where there is none
         *
         * @default true
         */
        createWhenNoExists?: boolean | undefined;
        /** comes back with the answer */
        userData?: string | undefined;
        /** who uploads */
        uploadFrom?: string | undefined;
        /** what the service is to know besides */
        extraParam?: Readonly<Record<string, string>> | undefined;
    }
    interface UploadReport {
        /** as it was given */
        userData: string;
        /** what the service adds */
        extraParam: Record<string, string>;
    }
    interface UploadTaskOptions {
        /** the path of a file on this machine */
        filePath: string;
        /** who uploads */
        businessSource?: string | undefined;
        /** the cloud folder; without one the user's own */
        cloudDir?: string | undefined;
        /**
         * take another name where the folder has such a file, instead of replacing it
         *
         * @default false
         */
        autoRename?: boolean | undefined;
    }
    interface Workspace {
        /** whether this machine is in the network of the user's company */
        isEnterpriseIP: boolean;
        /** the folder that uploads go to */
        uploadCloudPath: string;
        /** the same, as users see it */
        showCloudPath: string;
        /** the group that the folder belongs to */
        groupId: string;
    }
}

declare namespace NovaExtension {
    /**
     * Opens settings stores.
     *
     * @remarks one object, shared by all pages
     */
    interface SettingsManager {
        /**
         * Returns a Settings object for a store. Its members fail when what has the path is no settings file.
         *
         * @throws 1 "Format is illegal."
         * @throws 1 "missing required parameters."
         * @throws 1 "Path is illegal."
         * @throws 3 "empty handle."
         */
        settings(options: NovaExtension.SettingsManager.SettingsOptions): NovaExtension.SettingsManager.Settings;
    }
}

declare namespace NovaExtension.SettingsManager {
    interface SettingsOptions {
        /** 0 for the suite's own store, 1 for the INI file of `path` */
        format: 0 | 1;
        /** the INI file, made when something is first written; must be given with format 1 */
        path?: string | undefined;
    }
}

declare namespace NovaExtension {
    /**
     * Clipboard, screens, colours and small helpers.
     *
     * @remarks one object, shared by all pages
     */
    interface Utils {
        /**
         * Puts a text on the clipboard. Where nothing else keeps the clipboard, it is empty when the suite has ended.
         *
         * @param text the text; an empty one empties the clipboard
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "empty handle."
         */
        setTextToClipboard(text: string): Answer<undefined>;
        /**
         * Returns the text on the clipboard, empty when there is none.
         *
         * @throws 3 "Permission denied."
         * @throws 3 "empty handle."
         */
        getClipboardText(): Answer<string>;
        /**
         * Puts a picture on the clipboard, upright if the file says how it was taken.
         *
         * @throws 1 "wrong parameters."
         * @throws 3 "empty handle."
         * @throws 1 "missing required parameters."
         * @throws 3 "Path is illegal."
         * @throws 3 "%1 is not an image"
         */
        setImageToClipboard(options?: NovaExtension.Utils.ImageOptions): Answer<undefined>;
        /**
         * Returns the primary screen. Lengths are in CSS pixels, cut to whole ones.
         *
         * @throws 3 "empty handle."
         */
        getPrimaryScreenGeometry(): Answer<NovaExtension.Utils.ScreenGeometry>;
        /**
         * Returns all screens, the primary one first.
         *
         * @throws 3 "empty handle."
         */
        getAllScreenGeometry(): Answer<NovaExtension.Utils.ScreenGeometry[]>;
        /**
         * Returns the screen on which the page's window is, for the most part; of a page without a window the primary
         * one.
         *
         * @throws 3 "empty handle."
         */
        getCurrentScreenGeometry(): Answer<NovaExtension.Utils.ScreenGeometry>;
        /**
         * Shows a dialog in which the user picks a colour, and returns at once whether it is shown: `false` while
         * another dialog of the page is open. The function is called only if it is.
         *
         * @param callback called once, when the dialog has ended in any way
         * @throws 1 "wrong parameters."
         * @throws 1 "missing required parameters."
         */
        pickColor(options: NovaExtension.Utils.ColorOptions | undefined, callback: (report: NovaExtension.Utils.PickedColor) => void): Answer<boolean>;
        /**
         * Has the user choose a picture, or several. Returns their paths, none when cancelled.
         *
         * @throws 1 "wrong parameters."
         */
        getPictureFilepath(options?: NovaExtension.Utils.PictureOptions): Answer<string[]>;
        /**
         * Starts a program that goes on without the suite, if the suite lets the page start this one. Returns whether
         * it was started, without an envelope. No shell reads the arguments.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "%1 is not existed"
         * @throws 3 "Too many launches."
         */
        startDetach(options: NovaExtension.Utils.ProgramOptions): boolean;
        /**
         * Shows an eyedropper over all screens, with which the user picks the colour of a pixel: a click picks, Escape,
         * the other mouse buttons and a minute without the mouse cancel. Returns at once whether it is shown: `false`
         * while another dialog of the page is open, and where there is no X11. The function is called only if it is.
         *
         * @param callback called once, when the user has picked or cancelled
         * @throws 3 "Permission denied."
         * @throws 1 "wrong parameters."
         * @throws 1 "missing required parameters."
         */
        getSnapperColor(options: NovaExtension.Utils.ScreenColorOptions | undefined, callback: (report: NovaExtension.Utils.PickedColor) => void): Answer<boolean>;
        /**
         * Returns what whoever opened the page's window has passed along, as `paramExtra` of `WebviewMgr.create` or
         * `Tools.openInnerUrl`: an object, `{}` without any; with `key` one of its values, undefined when there is
         * none.
         *
         * @throws 1 "wrong parameters."
         */
        getParamExtra(options?: NovaExtension.Utils.ParamOptions): Answer<any>;
        /**
         * Returns whether the path is, or lies in, a directory that is closed to pages.
         *
         * @param path an absolute path
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        inBlackDownloadDir(path: string): Answer<boolean>;
        /**
         * Returns a token of the session of the signed-in user, by which the account's server knows that a request
         * comes from the suite: HMAC-SHA256 of `csrf` with the session as the key, 64 lower-case hexadecimal digits.
         * Another one after every login.
         *
         * @throws 3 "Permission denied."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         */
        getCsrf(): Answer<string>;
    }
}

declare namespace NovaExtension.Utils {
    interface ColorOptions {
        /** the colour to begin with, `#rgb` or `#rrggbb` */
        color?: string | undefined;
        /** the title of the dialog, up to 100 characters */
        title?: string | undefined;
        /**
         * let the user choose the opacity as well
         *
         * @default false
         */
        alpha?: boolean | undefined;
    }
    interface ImageOptions {
        /**
         * a file of the format PNG, JPEG, GIF, BMP or WebP, with at most 16,384 pixels a side and 64 million in all
         */
        path?: string | undefined;
        /** what would be in such a file, in place of `path` */
        bytes?: Bytes | undefined;
    }
    interface ParamOptions {
        /** one of the values */
        key?: string | undefined;
    }
    interface PickedColor {
        /** whether the user has picked a colour */
        accepted: boolean;
        /** the colour, `#rrggbb` in small letters, if there is one */
        color?: string;
        /** its opacity from 0 to 1, if the page has asked for it */
        alpha?: number;
    }
    interface PictureOptions {
        /** the dialog's title */
        title?: string | undefined;
        /** the directory to begin in */
        dir?: string | undefined;
        /**
         * let the user choose several
         *
         * @default false
         */
        multiple?: boolean | undefined;
    }
    interface ProgramOptions {
        /** its absolute path, without `..` and `//` */
        program: string;
        /** its arguments; none may be empty */
        arguments?: readonly string[] | undefined;
    }
    interface ScreenColorOptions {
        /**
         * how many times larger the magnifier shows what is around the mouse, from 2 to 20
         *
         * @default 8
         */
        zoom?: number | undefined;
    }
    interface ScreenGeometry {
        /** the name of its connector: `HDMI-1` */
        name: string;
        /** from the left of the desktop; may be negative */
        x: number;
        /** from the top of the desktop; may be negative */
        y: number;
        width: number;
        height: number;
        /** without the desktop's panels */
        availableX: number;
        /** without the desktop's panels */
        availableY: number;
        /** without the desktop's panels */
        availableWidth: number;
        /** without the desktop's panels */
        availableHeight: number;
        /** physical pixels for each CSS pixel */
        scale: number;
        /** whether it is the one for the desktop's panel */
        isPrimary: boolean;
    }
}

declare namespace NovaExtension {
    /**
     * The product's fixed strings, switches and configuration. What is not there is an empty string or 0.
     *
     * @remarks one object, shared by all pages
     */
    interface Product {
        /** Returns whether the product is a PDF program only. */
        isPDFStandAlone(): Answer<boolean>;
        /** Returns a string of the product's. */
        getProductString(options?: NovaExtension.Product.StringOptions): Answer<string>;
        /** Returns a string of the configuration. */
        getConfigString(name: string): Answer<string>;
        /** Returns an integer of the configuration. */
        getConfigInt(name: string): Answer<number>;
        /** Returns the language of the suite's user interface. */
        language(options?: NovaExtension.Product.LanguageOptions): Answer<string>;
        /** Returns what the product is and runs on. */
        getAppVersionInfo(): Answer<NovaExtension.Product.AppVersionInfo>;
    }
}

declare namespace NovaExtension.Product {
    interface AppVersionInfo {
        /** the operating system */
        platform: string;
        /** the product's name */
        product: string;
    }
    interface LanguageOptions {
        /**
         * 1 names the language with its region; what is no integer stands for 0
         *
         * @default 1
         */
        format?: number | undefined;
        /**
         * as it was when the suite last looked
         *
         * @default false
         */
        bUseCache?: boolean | undefined;
    }
    interface StringOptions {
        /** the string's name */
        key?: string | undefined;
        /**
         * selects the product configuration
         *
         * @default 37
         */
        option?: number | undefined;
    }
}

declare namespace NovaExtension {
    /**
     * Pages, mail, processes and archives. A page opens, shows or starts at most 20 things in ten seconds.
     *
     * @remarks one object, shared by all pages
     */
    interface Tools {
        /**
         * Has the desktop open an address in the program for it. Returns whether it does. Refused are other schemes,
         * addresses with a user or a password, and those of mails with other headers than `sendMail` has.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "Too many launches."
         */
        openUrl(options: NovaExtension.Tools.UrlOptions): Answer<boolean>;
        /**
         * Opens a window of the suite with a page. Returns the identifier of its view, for `WebviewMgr.getWebview`. The
         * window goes when the user closes it.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "Too many launches."
         * @throws 3 "create web widget fail!"
         */
        openInnerUrl(options: NovaExtension.Tools.InnerPageOptions): Answer<string>;
        /**
         * Returns the address of a service of the suite's: `https://account.example`, empty when there is none of that
         * name.
         *
         * @throws 3 "empty handle."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        getDomainUrl(options: NovaExtension.Tools.DomainOptions): Answer<string>;
        /**
         * Starts a program of the suite's, if the suite lets the page start this one. Returns whether it was started.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "%1 is not existed"
         * @throws 3 "Too many launches."
         */
        launchProcessByNova(options: NovaExtension.Tools.OwnProgramOptions): Answer<boolean>;
        /**
         * Returns which services the suite uses: 0 the public ones, 1 those of a private installation, 2 both.
         *
         * @throws 3 "empty handle."
         */
        getIntranetType(): Answer<number>;
        /**
         * Makes a zip archive of files and directories. Each is named in the archive without the directories that lead
         * there; of a directory all that is in it goes in, but no links, pipes and devices. Resolves when the archive
         * is in its place. On a failure there is no archive, and one that was there is as it was.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 1 "Path is empty."
         * @throws rejects with 3 "New path is illegal."
         * @throws rejects with 3 "%1 exists already."
         * @throws rejects with 3 "%1 is not existed"
         * @throws rejects with 3 "%1 can't be packed."
         * @throws rejects with 3 "%1 has too many entries."
         * @throws rejects with 3 "%1 can't be written."
         * @throws rejects with 3 "No space is left for %1."
         * @throws 3 "PromiseServiceNull"
         */
        compress(options: NovaExtension.Tools.CompressOptions): Promise<NovaExtension.Tools.CompressResult>;
        /**
         * Unpacks a zip archive into a directory. Directories become one with those that are there. Refused are
         * archives with names that lead elsewhere, links, programs, encrypted entries, or more than 100000 entries.
         * Resolves when all files are in their places. On a failure nothing has changed.
         *
         * @throws 1 "Path is empty."
         * @throws 1 "wrong parameters."
         * @throws rejects with 3 "Path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws rejects with 3 "%1 is damaged."
         * @throws rejects with 3 "%1 can't be unpacked."
         * @throws rejects with 3 "%1 is encrypted."
         * @throws rejects with 3 "%1 has too many entries."
         * @throws rejects with 3 "%1 is too large."
         * @throws rejects with 3 "%1 exists already."
         * @throws rejects with 3 "%1 can't be written."
         * @throws rejects with 3 "No space is left for %1."
         * @throws 3 "PromiseServiceNull"
         */
        decompress(options: NovaExtension.Tools.DecompressOptions): Promise<NovaExtension.Tools.DecompressResult>;
        /**
         * Has the user decide in a dialog. Returns the index of the button, -1 when the dialog was cancelled, or
         * another one of the page is open.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        showConfirmDlg(options: NovaExtension.Tools.ConfirmOptions): Answer<number>;
        /**
         * Shows a mail in the user's mail program, for the user to send. Returns whether the desktop has one started.
         * At most 100 addresses, and 60,000 characters as an address (URL).
         *
         * @throws 1 "wrong parameters."
         * @throws 1 "missing required parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "Too many launches."
         */
        sendMail(options?: NovaExtension.Tools.Mail): Answer<boolean>;
    }
}

declare namespace NovaExtension.Tools {
    interface CompressOptions {
        /** files of kinds that pages may copy, and directories of such files */
        files: readonly string[];
        /** the archive */
        path: string;
        /**
         * from 0, stored, to 9, smallest
         *
         * @default 6
         */
        level?: number | undefined;
        /**
         * replace what is there
         *
         * @default false
         */
        overwrite?: boolean | undefined;
    }
    interface CompressResult {
        /** of the archive, absolute */
        path: string;
        /** the files in it, without directories */
        files: number;
        /** the size of the archive */
        bytes: Int64;
    }
    interface ConfirmOptions {
        /** the question; plain text, shown up to 2,000 characters */
        text: string;
        /** the title of the dialog, shown up to 100 characters */
        title?: string | undefined;
        /** what else the user should know, below it, as long as `text` */
        detail?: string | undefined;
        /** the buttons, 1 to 5 strings of at most 60 characters; `["OK", "Cancel"]` if it is left out */
        buttons?: readonly string[] | undefined;
        /**
         * the index of the button for the Enter key
         *
         * @default 0
         */
        defaultButton?: number | undefined;
        /**
         * the icon
         *
         * @default "question"
         */
        type?: "none" | "info" | "question" | "warning" | "error" | undefined;
    }
    interface DecompressOptions {
        /** the archive, of a kind that pages may copy */
        path: string;
        /** the directory to unpack into, made with all directories above it when it is not there */
        folder: string;
        /**
         * replace files that are there
         *
         * @default false
         */
        overwrite?: boolean | undefined;
        /**
         * the most bytes that all files together may have
         *
         * @default 1073741824.0
         */
        maxBytes?: number | undefined;
    }
    interface DecompressResult {
        /** where the files are, absolute */
        folder: string;
        /** the files unpacked, without directories */
        files: number;
        /** their bytes */
        bytes: Int64;
    }
    interface DomainOptions {
        /** the service, as the suite names it: `account` */
        name: string;
    }
    interface InnerPageOptions {
        /** the address: `https`, `http`, or `nova` */
        url: string;
        /** the title of the window until the page has one */
        title?: string | undefined;
        /**
         * of the page, in CSS pixels
         *
         * @default 1024
         */
        width?: number | undefined;
        /**
         * of the page, in CSS pixels
         *
         * @default 768
         */
        height?: number | undefined;
        /** an object: what `Utils.getParamExtra` returns to the window's pages */
        paramExtra?: Readonly<Record<string, unknown>> | undefined;
    }
    interface Mail {
        /** who gets it: `ada@example.com`, without a name */
        to?: readonly string[] | undefined;
        /** who gets a copy */
        cc?: readonly string[] | undefined;
        /** who gets a copy that the others do not see */
        bcc?: readonly string[] | undefined;
        /** one line */
        subject?: string | undefined;
        /** plain text */
        body?: string | undefined;
    }
    interface OwnProgramOptions {
        /** its file in the suite's directory, without a `/` */
        program: string;
        /** its arguments; none may be empty */
        arguments?: readonly string[] | undefined;
    }
    interface UrlOptions {
        /** the address: `https`, `http` or `mailto` */
        url: string;
    }
}

declare namespace NovaExtension {
    /**
     * A channel between pages, with nothing but the four generic event members.
     *
     * @remarks one object, shared by all pages
     */
    interface Event {
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension {
    /**
     * Opens the suite's purchase page.
     *
     * @remarks one object, shared by all pages
     */
    interface Payment {
        /**
         * Opens the purchase page for the signed-in user, who buys there or closes it; only one is open at a time.
         * Resolves when it has been closed. What was bought is among the memberships and privileges by then. The
         * purchase page goes with the page that has opened it.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "Purchase service error."
         * @throws 3 "PromiseServiceNull"
         * @throws rejects with 3 "User not login"
         * @throws rejects with 3 "Another purchase is open."
         * @throws rejects with 3 "The purchase page can not be loaded."
         * @throws rejects with 3 "Purchase service error."
         */
        open(options: NovaExtension.Payment.OpenOptions): Promise<NovaExtension.Payment.PurchaseReport>;
    }
}

declare namespace NovaExtension.Payment {
    interface OpenOptions {
        /** who offers it, for the suite's records */
        source: string;
        /**
         * what the purchase page begins with, such as a membership tier; without it, or if that is not for sale, the
         * suite's own choice
         */
        item?: string | undefined;
    }
    interface PurchaseReport {
        /**
         * `closed` where the user closed the window, `cancelled` where nothing was bought for another reason, as when
         * the user has signed out
         */
        status: "purchased" | "cancelled" | "closed";
        /** what was bought; empty if nothing was */
        item: string;
    }
}

declare namespace NovaExtension {
    /**
     * The visual theme, its values and its changes.
     *
     * @remarks one object, shared by all pages
     */
    interface Skin {
        /**
         * Adds a listener of `skinchangeevent`. The same function is added once.
         *
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addSkinChangeListener(callback: (payload: NovaExtension.Skin.SkinChange) => void): Answer<undefined>;
        /**
         * Removes a listener of `skinchangeevent`; without one, all of the page's.
         *
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeSkinChangeListener(callback?: (payload: NovaExtension.Skin.SkinChange) => void): Answer<undefined>;
        /** Returns the name of the skin; an empty string when the suite has none. */
        getCurrentSkinName(): Answer<string>;
        /**
         * Uses another skin for the user. The theme has changed when this returns.
         *
         * @param name its name
         * @throws 1 "empty skin name param"
         * @throws 3 "skin is nullptr"
         * @throws 3 "switch skin failed"
         */
        switchSkin(name: string): Answer<undefined>;
        /**
         * Returns hints of the theme by their names: lengths and other integers. One that it does not have is 0.
         *
         * @throws 1 "empty config json obj"
         */
        getSkinHintConfig(options: NovaExtension.Skin.ValueNames): Answer<Record<string, number>>;
        /**
         * Returns gradients of the theme by their names. One that it does not have is a `NoGradient` without stops.
         *
         * @throws 1 "empty config json obj"
         */
        getSkinGradientConfig(options: NovaExtension.Skin.ValueNames): Answer<Record<string, NovaExtension.Skin.SkinGradient>>;
        /**
         * Returns colours of the theme by their names, as `rgba(red,green,blue,alpha)`. One that it does not have is
         * `rgba(0,0,0,0)`.
         *
         * @throws 1 "empty config json obj"
         */
        getSkinColorConfig(options: NovaExtension.Skin.ValueNames): Answer<Record<string, string>>;
        /**
         * Returns values of the theme, and of the file `custom.kuip` of the skin's plugin, by their names: a colour or
         * a gradient for what begins as one, anything else as it is. In place of a name a colour or a
         * `linear-gradient(...)` of CSS may stand. What begins as one and is none is transparent, or a gradient without
         * stops; a name that is not known has an empty string.
         *
         * @throws 1 "empty config json obj"
         */
        getSkinConfig(options: NovaExtension.Skin.ValueNames): Answer<Record<string, string | NovaExtension.Skin.SkinGradient>>;
        /**
         * Returns, for each type of files, which icon the theme has for it.
         *
         * @throws 3 "empty fileFilter"
         * @throws 1 "empty fileIdentifyList"
         */
        getFileTypeIconInfo(options: NovaExtension.Skin.FileTypes): Answer<Record<string, NovaExtension.Skin.FileTypeIcon>>;
        /**
         * Returns the addresses of icons, in the order of the request, in the colours of the theme. Of the sizes that
         * an icon has it is the smallest that is large enough on this screen, or else the largest.
         *
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        getSkinIconPathInfo(options: NovaExtension.Skin.Icons): Answer<NovaExtension.Skin.Icon[]>;
        /**
         * Adds a listener of the page. The same function is added once. The theme has other values: another skin is
         * used, or the skin itself has changed.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "skinchangeevent", callback: (payload: NovaExtension.Skin.SkinChange) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. The theme has other values: another skin is used, or the skin itself has
         * changed.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "skinchangeevent", callback?: (payload: NovaExtension.Skin.SkinChange) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.Skin {
    interface FileTypeIcon {
        /** whether the theme has an icon for the type */
        hasIcon: boolean;
        /** the name of that icon, or of the one for unknown files, for `getSkinIconPathInfo` */
        name: string;
        /** its address, at 32 by 32 CSS pixels; empty when there is no such icon */
        icon: string;
        /** the extensions of the type, in lower case, when they were asked for */
        extList?: string[];
    }
    interface FileTypes {
        /** types of files, each as one of its extensions without the dot */
        fileIdentify: readonly string[];
        /**
         * list all extensions of each type
         *
         * @default false
         */
        retrieveFullExtList?: boolean | undefined;
        /** `true`, as a string in any case: an icon that a type shares with others counts, too */
        all?: boolean | string | undefined;
    }
    interface GradientStop {
        /** 0 to 1 */
        position: number;
        /** a colour of CSS: `rgba(red,green,blue,alpha)` */
        color: string;
    }
    interface Icon {
        /** as it was given */
        name: string;
        /** the address of the image, which another skin makes another one; empty when there is no such icon */
        icon: string;
        /** the width of the image, in CSS pixels */
        width: number;
        /** the height of the image, in CSS pixels */
        height: number;
    }
    interface IconRequest {
        /** the name of the icon */
        name: string;
        /**
         * in CSS pixels, 1 to 1024
         *
         * @default 16
         */
        width?: number | undefined;
        /**
         * in CSS pixels, 1 to 1024
         *
         * @default 16
         */
        height?: number | undefined;
        /** the part of the theme in whose colours it is painted; without it `defaultThemeArea` */
        themeArea?: string | undefined;
    }
    interface Icons {
        /** what is wanted */
        icons: readonly NovaExtension.Skin.IconRequest[];
        /** the part of the theme for icons that name none */
        defaultThemeArea?: string | undefined;
    }
    interface SkinChange {
        /** the skin that is used now */
        name: string;
        /** the one before; the same when the values of the skin have changed */
        previousName: string;
    }
    interface SkinGradient {
        /** `LinearGradient`, `RadialGradient`, `ConicalGradient`, or `NoGradient` */
        type: string;
        /** beyond its ends: `PadSpread`, `ReflectSpread` or `RepeatSpread` */
        spread: string;
        /** what it is stretched to: `LogicalMode`, `StretchToDeviceMode`, `ObjectBoundingMode` or `ObjectMode` */
        coordinateMode: string;
        /** its colours, by their positions */
        stops: NovaExtension.Skin.GradientStop[];
    }
    interface ValueNames {
        /**
         * the names of values, as `group/name`, or `name` for a value of the group `CommonPalette` or else of
         * `CommonThemePalette`
         */
        config: readonly string[];
    }
}

declare namespace NovaExtension {
    /**
     * The signed-in user, login and logout, and their changes. With nobody signed in, strings and lists are empty and
     * booleans `false`.
     *
     * @remarks one object, shared by all pages
     */
    interface Account {
        /**
         * What the user's memberships allow, and its changes.
         *
         * @throws 3 "empty handle."
         */
        readonly Privilege: NovaExtension.Account.Privilege;
        /**
         * Has the user sign in. Returns whether the service takes the request on, which is not the case while another
         * login is under way; events say what becomes of it.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        login(options: NovaExtension.Account.LoginOptions): Answer<boolean>;
        /**
         * Signs the current user out. Returns whether the service takes the request on.
         *
         * @param source who signs the user out
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 1 "missing required parameters."
         */
        logout(source: string): Answer<boolean>;
        /**
         * Opens the membership upgrade. Returns whether the service takes the request on.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        upgradeMember(options: NovaExtension.Account.UpgradeOptions): Answer<boolean>;
        /**
         * Adds a listener of `event.account.login`. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addLoginListener(callback: (payload: NovaExtension.Account.LoginChange) => void): Answer<undefined>;
        /**
         * Removes a listener of `event.account.login`; without one, all of the page's.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeLoginListener(callback?: (payload: NovaExtension.Account.LoginChange) => void): Answer<undefined>;
        /**
         * Adds a listener of `event.account.logout`. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addLogoutListener(callback: (payload: NovaExtension.Account.LoginChange) => void): Answer<undefined>;
        /**
         * Removes a listener of `event.account.logout`; without one, all of the page's.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeLogoutListener(callback?: (payload: NovaExtension.Account.LoginChange) => void): Answer<undefined>;
        /**
         * Adds a listener of `event.user.info.changed`. The same function is added once.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addUserInfoChangedListener(callback: (payload: NovaExtension.Account.CallStatus) => void): Answer<undefined>;
        /**
         * Removes a listener of `event.user.info.changed`; without one, all of the page's.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeUserInfoChangedListener(callback?: (payload: NovaExtension.Account.CallStatus) => void): Answer<undefined>;
        /**
         * Returns whether a user is signed in.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        isLoggedIn(): Answer<boolean>;
        /**
         * Returns the current user's id.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        getUserId(): Answer<string>;
        /**
         * Returns what is known of the current user.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        getUserInfo(): Answer<NovaExtension.Account.UserInfo>;
        /**
         * Returns the current user's memberships.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        getMemberInfo(): Answer<NovaExtension.Account.MemberInfo>;
        /**
         * Returns what is known of the current user's company.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        getCompanyInfo(): Answer<NovaExtension.Account.CompanyInfo>;
        /**
         * Returns the users who are signed in on this machine.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        getAccountListInfo(): Answer<NovaExtension.Account.KnownAccount[]>;
        /**
         * Returns whether the current user is a Nova member.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        isNovaMember(): Answer<boolean>;
        /**
         * Returns whether the current user is a Folio member.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        isFolioMember(): Answer<boolean>;
        /**
         * Returns whether the current user is a super member.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        isSuperMember(): Answer<boolean>;
        /**
         * Returns whether the current user belongs to a company.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        isCompanyMember(): Answer<boolean>;
        /**
         * Returns whether more than one user is signed in on this machine.
         *
         * @throws 3 "empty handle."
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        isMultiAccount(): Answer<boolean>;
        /**
         * Adds a listener of the page. The same function is added once. A user has been signed in.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "event.account.login", callback: (payload: NovaExtension.Account.LoginChange) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. A user has been signed out.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "event.account.logout", callback: (payload: NovaExtension.Account.LoginChange) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. What is known of the user has changed.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "event.user.info.changed", callback: (payload: NovaExtension.Account.CallStatus) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. The user's memberships have changed.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "event.account.Member.info.changed", callback: (payload: NovaExtension.Account.MemberInfoChange) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. A login that this page started with a
         * `confirmId` has succeeded.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "confirmLoginSuccess", callback: (payload: NovaExtension.Account.LoginConfirmation) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. A user has been signed in.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "event.account.login", callback?: (payload: NovaExtension.Account.LoginChange) => void): void;
        /**
         * Removes a listener of the page. A user has been signed out.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "event.account.logout", callback?: (payload: NovaExtension.Account.LoginChange) => void): void;
        /**
         * Removes a listener of the page. What is known of the user has changed.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "event.user.info.changed", callback?: (payload: NovaExtension.Account.CallStatus) => void): void;
        /**
         * Removes a listener of the page. The user's memberships have changed.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "event.account.Member.info.changed", callback?: (payload: NovaExtension.Account.MemberInfoChange) => void): void;
        /**
         * Removes a listener of the page. A login that this page started with a `confirmId` has succeeded.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "confirmLoginSuccess", callback?: (payload: NovaExtension.Account.LoginConfirmation) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.Account {
    interface CallStatus {
        /** always `ok` */
        callstatus: string;
    }
    interface CompanyInfo {
        companyId: string;
        name: string;
        email: string;
        phoneNumber: string;
        description: string;
        address: string;
        city: string;
        country: string;
        province: string;
        postal: string;
        fax: string;
        /** the user who administrates it */
        adminId: string;
    }
    interface KnownAccount {
        userId: string;
        /** what the user signs in with */
        account: string;
        nickName: string;
        /** the address of the portrait */
        pic: string;
        /** empty for one who belongs to no company */
        companyId: string;
        companyName: string;
        /** whether this is the current user */
        isCurrent: boolean;
    }
    interface LoginChange {
        /** always `ok` */
        callstatus: string;
        /** whether one user takes another one's place */
        isSwitching: boolean;
        /** who was signed in, or out */
        userId: string;
        /** the user's name */
        userName: string;
        /** the session that began; empty when one has ended */
        novasid: string;
    }
    interface LoginConfirmation {
        /** always `ok` */
        callstatus: string;
        /** as the page passed it to `login` */
        confirmId: string;
        /** who was signed in */
        userId: string;
    }
    interface LoginOptions {
        /** who has the user sign in */
        src: string;
        /** for what */
        bizSrc?: string | undefined;
        /** of the page's choice: `confirmLoginSuccess` carries it when this login has succeeded */
        confirmId?: string | undefined;
        /** the way to sign in */
        loginSrc?: string | undefined;
        /** where in the page */
        from?: string | undefined;
        /** begin with a code to scan */
        qrcode?: boolean | undefined;
        /** the dialog is modal */
        bShowModal?: boolean | undefined;
        /** the dialog stays on top */
        bTopWindow?: boolean | undefined;
    }
    interface MemberInfo {
        /** by membership tier, all that the service has */
        members: Record<string, NovaExtension.Account.Membership>;
        /** the memberships as the service's server has them */
        rawData: Record<string, any>;
    }
    interface MemberInfoChange {
        /** always `ok` */
        callstatus: string;
        /** the memberships there are now */
        data: NovaExtension.Account.MemberInfo;
    }
    interface Membership {
        /** whether the user is one */
        isMember: boolean;
        /** when that ends, in milliseconds since 1970 (UTC); 0 when it does not, or is not known */
        expireTime: Int64;
    }
    interface UpgradeOptions {
        /** who offers the upgrade */
        csource: string;
        /** the page to pay on */
        payUrl?: string | undefined;
        /** for what */
        src?: string | undefined;
        /** names this upgrade */
        confirmId?: string | undefined;
        /** the application that it is for */
        appName?: string | undefined;
        /** the X11 window that owns the dialog */
        parentWidget?: number | undefined;
    }
    interface UserInfo {
        userId: string;
        /** what the user signs in with */
        account: string;
        nickName: string;
        /** the address of the portrait */
        pic: string;
        /** the portrait on this machine */
        thumbnailLocalPath: string;
        email: string;
        phoneNumber: string;
        status: string;
        sex: string;
        /** the way in which the user signed in */
        loginMode: string;
        country: string;
        province: string;
        city: string;
        address: string;
        postal: string;
        /** empty for one who belongs to no company */
        companyId: string;
        /** when the user registered, in milliseconds since 1970 (UTC); 0 when that is not known */
        regtime: Int64;
        deviceStatus: string;
        isPlus: boolean;
        roleList: string[];
    }
}

declare namespace NovaExtension {
    /**
     * Generic requests to the cloud service, with its events.
     *
     * @remarks one object, shared by all pages
     */
    interface CloudAdapter {
        /**
         * Calls an operation of the cloud service. Resolves with what it replies, also when it refuses: look at
         * `state`. Rejects when there is no reply. `setCurrentUser`, `uploadFileToCloud` and what begins with `sync.`
         * is refused: pages may not sign others in, and `CloudDoc` and `SyncFolder` have members for the rest.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Common request failed."
         */
        commonRequest(options: NovaExtension.CloudAdapter.RequestOptions): Promise<NovaExtension.CloudAdapter.AdapterReply>;
        /**
         * Adds a listener of the page. The same function is added once. The cloud service reports something, with all
         * that it says of it.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "cloud.adapter.notify", callback: (payload: NovaExtension.CloudAdapter.AdapterNotice) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. The cloud service reports something, with all that it says of it.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "cloud.adapter.notify", callback?: (payload: NovaExtension.CloudAdapter.AdapterNotice) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.CloudAdapter {
    interface AdapterNotice {
        /** what has happened; the other properties, all strings, depend on it */
        action: string;
    }
    interface AdapterReply {
        /** how the request ended; 0 that it succeeded */
        state: number;
        /** a single result, or of a failure a word for it */
        resultString: string;
        /** results by their names */
        resultMap: Record<string, string>;
        /** a list of results */
        resultList: string[];
    }
    interface RequestOptions {
        /** the service's name of the operation; at most 255 bytes */
        method: string;
        /** its arguments by their names, all strings */
        params?: Readonly<Record<string, string>> | undefined;
        /**
         * for whom, one of the users who are signed in; the current one when left out. It goes to the service with the
         * arguments
         */
        userId?: string | undefined;
    }
}

declare namespace NovaExtension {
    /**
     * Notifications between a page and the document chat panel.
     *
     * @remarks one object for each page
     */
    interface AiDocsChat {
        /**
         * Has a function called with the notifications of the panel, in place of an earlier one.
         *
         * @param callback is called with each notification of the panel's
         * @throws 3 "pThis is null"
         * @throws 3 "handle is null"
         * @throws 1 "Invalid argument"
         * @throws 3 "Panel not Found"
         */
        registerQACallback(callback: (report: Record<string, any>) => void): Answer<undefined>;
        /**
         * Sends a notification to the panel, with `from` as `"qaPage"`. The panel has received it when this returns.
         *
         * @param notification what the panel understands
         * @throws 3 "pThis is null"
         * @throws 3 "handle is null"
         * @throws 1 "Invalid argument"
         * @throws 3 "Panel not Found"
         * @throws 3 "Failed invoke method: %1"
         */
        qaNotify(notification: Readonly<Record<string, unknown>>): Answer<undefined>;
    }
}

declare namespace NovaExtension {
    /**
     * Folders of this machine that are kept in step with a folder of the cloud. `syncFolder` makes a folder one of
     * them; from then on it is looked at every few seconds, and changes of either side go to the other. Of a file that
     * has changed on both sides both versions are kept; one that was removed on one side is removed on the other only
     * when it has not changed there. `getSyncFolderCount` lists them, the listeners learn what is done. While another
     * dialog of the page is open, its dialogs end at once as if the user had cancelled them.
     *
     * @remarks one object, shared by all pages
     */
    interface SyncFolder {
        /**
         * Adds a listener of `syncFolder.notify`. The same function is added once.
         *
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addNotifyListener(callback: (payload: NovaExtension.SyncFolder.SyncNotice) => void): Answer<undefined>;
        /**
         * Removes a listener of `syncFolder.notify`; without one, all of the page's.
         *
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeNotifyListener(callback?: (payload: NovaExtension.SyncFolder.SyncNotice) => void): Answer<undefined>;
        /**
         * Shows the user's sync folders, where they can be ended: files then stay on both sides. Resolves when the
         * dialog is closed.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Sync folder dialogs are not available."
         * @throws 3 "Promise Service error."
         */
        openSyncFolderListDlg(options?: NovaExtension.SyncFolder.EntryOptions): Promise<NovaExtension.SyncFolder.DialogEnd>;
        /**
         * Has the user choose a local folder. Resolves with its path, empty when the user cancelled; whether it can be
         * a sync folder is for `checkSyncFolderPathValid` to say.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Sync folder dialogs are not available."
         * @throws 3 "Promise Service error."
         */
        showSyncFolderPathWidget(options?: NovaExtension.SyncFolder.PathDialogOptions): Promise<string>;
        /**
         * Shows how much space the user has in the cloud. Resolves when that is closed.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Sync folder dialogs are not available."
         * @throws 3 "Promise Service error."
         */
        openCloudSpacePage(options?: NovaExtension.SyncFolder.EntryOptions): Promise<NovaExtension.SyncFolder.DialogEnd>;
        /**
         * Resolves with the size of a folder. Of a local one, links and what is on other disks do not count; one with
         * more than 200000 entries is refused (`tooManyFiles`).
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        getFolderSize(options?: NovaExtension.SyncFolder.SizeOptions): Promise<NovaExtension.SyncFolder.FolderSize>;
        /**
         * Resolves with the ways in which folders can be synced.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        getSupportSelectSyncFolderMode(): Promise<NovaExtension.SyncFolder.SyncModes>;
        /**
         * Resolves with whether `syncFolder` would take a local folder, and what it would transfer.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        syncFolderPrecheck(options: NovaExtension.SyncFolder.FolderOptions): Promise<NovaExtension.SyncFolder.SyncPrecheck>;
        /**
         * The same for `setPersonalDesktopSync`.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        desktopSyncPreCheck(options?: NovaExtension.SyncFolder.DesktopOptions): Promise<NovaExtension.SyncFolder.SyncPrecheck>;
        /**
         * The same for `syncToLocal`, and whether the disk has the space.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        syncToLocalPrecheck(options: NovaExtension.SyncFolder.ToLocalOptions): Promise<NovaExtension.SyncFolder.SyncPrecheck>;
        /**
         * Makes the user's desktop a sync folder, which is synced within some seconds. Fails with `alreadySynced` when
         * it is one.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        setPersonalDesktopSync(options?: NovaExtension.SyncFolder.DesktopOptions): Promise<NovaExtension.SyncFolder.SyncFolderInfo>;
        /**
         * Ends that; the files stay on both sides. Resolves with whether the desktop was a sync folder.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        cancelPersonalDesktopSync(options?: NovaExtension.SyncFolder.EntryOptions): Promise<boolean>;
        /**
         * Resolves with whether synced files have lost the mark that file managers show as an overlay icon: the
         * extended attribute `user.nova.sync-state`.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        getIsNeedRepairOverlayIcon(): Promise<NovaExtension.SyncFolder.OverlayIcons>;
        /**
         * Gives it to them again.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        doRepairOverlayIcon(): Promise<NovaExtension.SyncFolder.OverlayIcons>;
        /**
         * Syncs a sync folder now, or makes a local folder one and syncs it. Resolves when that is done. When the
         * folder is being synced already, it is synced once more.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        syncFolder(options?: NovaExtension.SyncFolder.SyncOptions): Promise<NovaExtension.SyncFolder.SyncSummary>;
        /**
         * Makes a folder of the cloud a local one, too, as a sync folder. Resolves when it has been synced.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        syncToLocal(options: NovaExtension.SyncFolder.ToLocalOptions): Promise<NovaExtension.SyncFolder.SyncSummary>;
        /**
         * Moves a sync folder on this machine, or takes note that the user has moved it. To another disk nothing is
         * moved: its files are downloaded there, and the old ones stay. A sync under way ends with `cancelled`.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        changeSyncPath(options: NovaExtension.SyncFolder.MoveOptions): Promise<NovaExtension.SyncFolder.SyncFolderInfo>;
        /**
         * Resolves with whether a local folder can become a sync folder. Reasons against it: `closed` (to pages; or it
         * holds what is, or the home folder), `root`, `home`, `missing`, `link`, `notFolder`, `notWritable`,
         * `closedToUploads`, `withinSyncFolder`, `containsSyncFolder`.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        checkSyncFolderPathValid(options: NovaExtension.SyncFolder.PathOptions): Promise<NovaExtension.SyncFolder.PathCheck>;
        /**
         * Resolves with whether a sync folder can be synced at present. Reasons against it: `missing` and
         * `otherFolder`, as in its `state`.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        checkSyncFolderValid(options: NovaExtension.SyncFolder.IdOptions): Promise<NovaExtension.SyncFolder.PathCheck>;
        /**
         * Resolves with the user's files of the cloud that were changed last, the latest first.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        getRecentFileList(options?: NovaExtension.SyncFolder.RecentOptions): Promise<NovaExtension.SyncFolder.RecentFile[]>;
        /**
         * Resolves with what a sync of a folder would do. Changes nothing.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "wrong parameters."
         * @throws 3 "New path is illegal."
         * @throws rejects with 3 "New path is illegal."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        scanFolder(options?: NovaExtension.SyncFolder.ScanOptions): Promise<NovaExtension.SyncFolder.FolderScan>;
        /**
         * Resolves with the user's sync folders and how many there are.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Sync folder request failed: %1."
         */
        getSyncFolderCount(): Promise<NovaExtension.SyncFolder.SyncFolderList>;
        /**
         * Shows a message. Resolves with the index of the button that the user clicked, -1 for none.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Sync folder dialogs are not available."
         * @throws 3 "Promise Service error."
         */
        showNovaBox(options: NovaExtension.SyncFolder.MessageOptions): Promise<number>;
        /**
         * As whom the user can sync: for himself or herself, and as a member of a company.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         */
        getUserTypeList(): Answer<NovaExtension.SyncFolder.UserType[]>;
        /**
         * Shows what members of a company may have more. Resolves when that is closed.
         *
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Sync folder dialogs are not available."
         * @throws 3 "Promise Service error."
         */
        showCompanyPrivilegeDlg(options?: NovaExtension.SyncFolder.PrivilegeOptions): Promise<NovaExtension.SyncFolder.DialogEnd>;
        /**
         * Adds a listener of the page. The same function is added once. A sync folder has been added, moved or removed,
         * or a sync of it has begun or ended. One that nobody requested and that finds nothing to do is not reported.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "syncFolder.notify", callback: (payload: NovaExtension.SyncFolder.SyncNotice) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. A sync folder has been added, moved or removed, or a sync of it has begun or
         * ended. One that nobody requested and that finds nothing to do is not reported.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "syncFolder.notify", callback?: (payload: NovaExtension.SyncFolder.SyncNotice) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.SyncFolder {
    interface DesktopOptions {
        /** the folder of the cloud; `Desktop` when left out */
        cloudPath?: string | undefined;
    }
    interface DialogEnd {
        /** false when the user cancelled it, or it could not be answered */
        confirmed: boolean;
    }
    interface EntryOptions {
        /** what the user came from, for statistics */
        from?: string | undefined;
    }
    interface FolderOptions {
        /** the local folder */
        localPath: string;
        /** the folder of the cloud: its path or id. The name of the local folder when left out */
        cloudPath?: string | undefined;
    }
    interface FolderScan {
        /** in the local folder, at any depth */
        files: number;
        /** likewise */
        folders: number;
        /** of these files, bytes */
        size: number;
        /** files that would go to the cloud */
        uploads: number;
        /** files that would come from there, those with conflicts too */
        downloads: number;
        /** files that would be removed on one side */
        removals: number;
        /** files that have changed on both sides */
        conflicts: number;
        /** what is never synced */
        skipped: number;
        /** that would be transferred */
        bytes: number;
        /** what would be done, by path; the first 1000 */
        changes: NovaExtension.SyncFolder.ScanChange[];
        /** whether there are more than these */
        hasMore: boolean;
    }
    interface FolderSize {
        /** of all files in it, bytes */
        size: number;
        /** at any depth */
        files: number;
        /** at any depth, without itself */
        folders: number;
    }
    interface IdOptions {
        /** the sync folder */
        id: string;
    }
    interface MessageOptions {
        /** plain text, shown up to 2,000 characters */
        text: string;
        /** of the dialog, shown up to 100 characters */
        title?: string | undefined;
        /** their labels, at most 4, shown up to 60 characters; the suite's own button when left out */
        buttons?: readonly string[] | undefined;
    }
    interface MoveOptions {
        /** the sync folder */
        id: string;
        /** where nothing is yet, or an empty folder, or where the user has moved it */
        localPath: string;
    }
    interface OverlayIcons {
        /**
         * whether the disk can keep the marks by which file managers know synced files; false as well while there are
         * no such files
         */
        supported: boolean;
        /** files without their mark */
        missing: number;
        /** those that have got it now */
        repaired: number;
    }
    interface PathCheck {
        /** whether it can be used */
        valid: boolean;
        /** a word for why it can not; empty when it can */
        reason: string;
    }
    interface PathDialogOptions {
        /** of the dialog, shown up to 100 characters */
        title?: string | undefined;
        /** the folder that it shows first */
        localPath?: string | undefined;
    }
    interface PathOptions {
        /** the local folder */
        localPath: string;
    }
    interface PrivilegeOptions {
        /** what the user could not do without it */
        privilege?: string | undefined;
    }
    interface RecentFile {
        /** its id in the cloud */
        fileId: string;
        /** its name */
        name: string;
        /** its path in the cloud */
        cloudPath: string;
        /** where it is in a sync folder; empty when it is in none */
        localPath: string;
        /** bytes */
        size: number;
        /** when the cloud got this version, ms since 1970 */
        changeTime: number;
    }
    interface RecentOptions {
        /**
         * how many at most, 1 to 200
         *
         * @default 20
         */
        count?: number | undefined;
    }
    interface ScanChange {
        /** relative to the folder */
        path: string;
        /** `upload`, `download`, `removeLocal`, `removeCloud`, `conflict` (both versions are kept) or `skip` */
        action: string;
    }
    interface ScanOptions {
        /** a sync folder; or else */
        id?: string | undefined;
        /** a local folder that may become one */
        localPath?: string | undefined;
        /** then the folder of the cloud, which may be missing */
        cloudPath?: string | undefined;
    }
    interface SizeOptions {
        /** a folder of this machine, or else */
        localPath?: string | undefined;
        /** one of the cloud: its path or id; `/` is the root folder */
        cloudPath?: string | undefined;
    }
    interface SyncFolderInfo {
        /** by which other members know it */
        id: string;
        /** the folder on this machine */
        localPath: string;
        /** the folder in the cloud */
        cloudFolderId: string;
        /** its path there; empty for the root folder */
        cloudPath: string;
        /** `folder`, or `desktop` for the user's desktop */
        kind: string;
        /** `twoWay`: changes of both sides go to the other */
        mode: string;
        /**
         * `idle`, `syncing`, `failed` (see `lastError`), `missing` (there is no local folder) or `otherFolder` (another
         * one is in its place); for the last two call `changeSyncPath`
         */
        state: string;
        /** when the last sync ended that was requested or had something to do, ms since 1970; 0 for never */
        lastSyncTime: number;
        /** a word for why that failed; empty when it succeeded */
        lastError: string;
    }
    interface SyncFolderList {
        /** how many there are */
        count: number;
        /** all of them, the oldest first */
        folders: NovaExtension.SyncFolder.SyncFolderInfo[];
    }
    interface SyncModes {
        /** whether there is more than one to choose from */
        supported: boolean;
        /** for the option `mode` of `syncFolder`; the first is the usual one */
        modes: string[];
    }
    interface SyncNotice {
        /** the sync folder */
        id: string;
        /** `added`, `syncing`, `synced`, `failed`, `moved` or `removed` */
        state: string;
        /** the folder on this machine */
        localPath: string;
        /** files, as those below, once a sync has ended */
        uploaded: number;
        /** files that came from the cloud */
        downloaded: number;
        /** files that were removed on one side */
        removed: number;
        /** files of which both versions are kept */
        conflicts: number;
        /** files that will be tried again */
        failed: number;
        /** a word for why the first of them, or all, failed; or empty */
        reason: string;
    }
    interface SyncOptions {
        /** a sync folder, which is synced now; or else */
        id?: string | undefined;
        /** an existing local folder, which becomes one */
        localPath?: string | undefined;
        /**
         * then the folder of the cloud: its path or id. It is made where it is missing; what is in it comes to the
         * local one, too. The name of the local folder when left out
         */
        cloudPath?: string | undefined;
        /** then one of `getSupportSelectSyncFolderMode` */
        mode?: string | undefined;
    }
    interface SyncPrecheck {
        /** whether it can be done */
        allowed: boolean;
        /** a word for why it can not, as of `checkSyncFolderPathValid`, or `diskFull`; empty when it can */
        reason: string;
        /** how many would be transferred */
        files: number;
        /** of these, bytes */
        size: number;
        /** on the disk of the local folder */
        freeBytes: number;
    }
    interface SyncSummary {
        /** the sync folder */
        id: string;
        /** files that went to the cloud */
        uploaded: number;
        /** files that came from there */
        downloaded: number;
        /** files that were removed on one side as they had been on the other */
        removed: number;
        /** files that had changed on both sides: the local version is kept as `name (local version 1).ext` */
        conflicts: number;
        /** links, devices, names that the cloud can not have, and files that may not be uploaded */
        skipped: number;
        /** transferred */
        bytes: number;
    }
    interface ToLocalOptions {
        /** an existing folder of the cloud: its path or id */
        cloudPath: string;
        /** the local folder; made where its parent folder is there */
        localPath: string;
    }
    interface UserType {
        /** `personal` or `company` */
        type: string;
        /** the user's id, or the company's */
        id: string;
        /** for display; may be empty */
        name: string;
    }
}

declare namespace NovaExtension {
    /**
     * Informs the cloud-document service that a web document has been set up.
     *
     * @remarks one object, shared by all pages
     */
    interface WebDocsControl {
        /**
         * Reports that a document has been set up and what label it has got. Resolves when the service has recorded it.
         *
         * @throws 3 "pThis is null"
         * @throws 3 "handle is null"
         * @throws 3 "empty core app."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Update classify label status failed."
         */
        notifySetupFinished(options: NovaExtension.WebDocsControl.SetupDetails): Promise<NovaExtension.WebDocsControl.ServiceReport>;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.WebDocsControl {
    interface ServiceReport {
        /** what the service adds */
        extraParam: Record<string, string>;
    }
    interface SetupDetails {
        /** the document's group */
        group_id: string;
        /** the document */
        file_id: string;
        /** which set-up of the document this is */
        uuid: string;
        /** the label that the document has got */
        label: string;
    }
}

declare namespace NovaExtension {
    /**
     * Notifications between a page and the contract panel.
     *
     * @remarks one object for each page
     */
    interface KContract {
        /**
         * Has a function called with the panel's notifications for this view, in place of an earlier one.
         *
         * @param callback is called with each notification whose `viewId` is this page's view
         * @throws 3 "pThis is null"
         * @throws 3 "handle is null"
         * @throws 1 "Invalid argument"
         * @throws 3 "Panel not Found"
         */
        registerCallback(callback: (report: Record<string, any>) => void): Answer<undefined>;
        /**
         * Sends a notification to the panel, which has received it when this returns.
         *
         * @param notification what the panel understands
         * @throws 3 "pThis is null"
         * @throws 3 "handle is null"
         * @throws 1 "Invalid argument"
         * @throws 3 "Panel not Found"
         * @throws 3 "Failed invoke method: %1"
         */
        panelNotify(notification: Readonly<Record<string, unknown>>): Answer<undefined>;
    }
}

declare namespace NovaExtension.ByteBufferManager {
    /**
     * Bytes that the suite holds for pages. A member that takes bytes takes a ByteBuffer for its own, so they need not
     * be in script meanwhile.
     *
     * @remarks handed out by another object
     */
    interface ByteBuffer {
        /** Returns a copy of the bytes, without an envelope. */
        data(): Uint8Array;
        /** Returns how many bytes it holds. */
        getSize(): Answer<number>;
        /**
         * Keeps so many of the bytes from the first on, and appends zero bytes where there are fewer. With 0 the memory
         * is free at once; otherwise it is when script has dropped the buffer and the engine has collected it.
         *
         * @param size in bytes, at most 268,435,456
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 1 "Size is illegal."
         * @throws 3 "Too many bytes in buffers."
         */
        setSize(size: number): Answer<undefined>;
    }
}

declare namespace NovaExtension.FileSystem {
    /**
     * A handle on one path, that of an existing regular file when FileSystem made it.
     *
     * @remarks handed out by another object
     */
    interface File {
        /** Returns whether the file is still there. */
        exists(): Answer<boolean>;
        /**
         * Removes the file. Returns whether the system did it.
         *
         * @throws 3 "illegal path"
         */
        remove(): Answer<boolean>;
        /**
         * Returns the size of the file in bytes.
         *
         * @throws 3 "empty path"
         * @throws 3 "invalid path"
         */
        size(): Answer<Int64>;
    }
}

declare namespace NovaExtension.PluginManager {
    /**
     * One plugin of the suite. Every member fails once the suite has destroyed the plugin.
     *
     * @remarks handed out by another object
     */
    interface Plugin {
        /**
         * Loads the plugin and returns the status: 0 it is ready, 1 it can not be loaded, 2 it is being loaded in the
         * background, 3 cancelled, 4 it went meanwhile. With 2 the function is called with `Progress` while the plugin
         * is fetched, and once with how it ended; `Failed` also when the suite destroys the plugin. With any other it
         * is never called.
         *
         * @param options how to load it
         * @param callback is called when the status is 2
         * @throws 3 "invalid plugin"
         * @throws 1 "wrong parameters."
         */
        load(options: NovaExtension.PluginManager.Plugin.LoadOptions, callback?: (report: NovaExtension.PluginManager.Plugin.PluginLoadReport) => void): Answer<number>;
        /**
         * Returns a property of the plugin; undefined when it has none of that name.
         *
         * @param propName its name
         * @throws 3 "invalid plugin"
         */
        getProp(propName: string): Answer<any>;
        /**
         * Returns the absolute path of a file among the plugin's resources, which need not exist; an empty string for a
         * path that leads out of them.
         *
         * @param relativePath below the plugin's resources
         * @throws 3 "invalid plugin"
         * @throws 3 "plugin is not ready"
         */
        resourceFilePath(relativePath: string): Answer<string>;
        /**
         * Returns the absolute path of a file of the plugin's framework, likewise.
         *
         * @param relativePath below the plugin's framework
         * @throws 3 "invalid plugin"
         * @throws 3 "plugin is not ready"
         */
        frameworkFilePath(relativePath: string): Answer<string>;
    }
}

declare namespace NovaExtension.PluginManager.Plugin {
    interface LoadOptions {
        /**
         * 0 loads it if it is not ready, 1 only what is on this machine, 2 once more if it is ready, 4 without what the
         * suite shows of it; any other is 0
         *
         * @default 0
         */
        option?: number | undefined;
        /**
         * 1 loads it before the call returns; any other is 0
         *
         * @default 0
         */
        mode?: number | undefined;
    }
    interface PluginLoadReport {
        /** each but `Progress` is the last one */
        step: "Progress" | "Succeeded" | "Failed" | "Canceled";
        /** with `Progress`: how much there is to fetch */
        totalBytes?: Int64;
        /** with `Progress`: how much of it has been fetched */
        receivedBytes?: Int64;
    }
}

declare namespace NovaExtension.CloudDoc {
    /**
     * Requests to the servers of the cloud, by their names.
     *
     * @remarks handed out by another object
     */
    interface Orbitapi {
        /**
         * Sends a request for the signed-in user. Resolves with whatever the server replies, also when that is a
         * refusal: look at `ok`. Rejects when there is no reply, or one that is damaged.
         *
         * @param callback called with the reply, too, after the promise has got it
         * @throws 3 "Cloud service error."
         * @throws 3 "Get account SDK error."
         * @throws 3 "User not login"
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         * @throws 3 "Permission denied."
         * @throws 3 "Cloud SDK error."
         * @throws 3 "Call %1 failed."
         * @throws 3 "Promise Service error."
         * @throws rejects with 3 "Common request failed."
         * @throws rejects with 3 "Common request timed out."
         */
        commonRequest(options: NovaExtension.CloudDoc.Orbitapi.RequestOptions, callback?: (report: NovaExtension.CloudDoc.Orbitapi.OrbitReply) => void): Promise<NovaExtension.CloudDoc.Orbitapi.OrbitReply>;
    }
}

declare namespace NovaExtension.CloudDoc.Orbitapi {
    interface OrbitReply {
        /** whether `resultState` is 0 */
        ok: boolean;
        /** how the request ended; 0 that it succeeded */
        resultState: number;
        /** the server's status; 0 when none was reached */
        httpStatusCode: number;
        /** why none was reached; 0 when one was */
        networkError: number;
        /** what the server says of it, not meant for users */
        message: string;
        /**
         * what was requested: JSON with an object or a list, parsed, or any other string as it is. Absent where there
         * is none
         */
        data?: any;
        /** the body of the reply, where the server gives it besides the data */
        result: string;
        /** the headers of the reply */
        headers: Record<string, string>;
        /** the server */
        host: string;
        /** the request's name on the server */
        api: string;
        /** the user for whom it was made */
        userId: string;
        /** when the reply came, ms since 1970; 0 when not known */
        replyTime: number;
        /** how long it took, ms */
        duration: number;
    }
    interface RequestOptions {
        /** the name of the request, such as `user.space` */
        requestKey: string;
        /** what the request itself takes, all strings */
        params?: Readonly<Record<string, string>> | undefined;
        /** which part of the product makes it, for statistics */
        bizSource?: string | undefined;
        /**
         * after how many ms it fails; 1 to 600000
         *
         * @default 30000
         */
        timeoutMs?: number | undefined;
        /**
         * whether it may be sent again when the connection breaks; not for one that changes something twice
         *
         * @default false
         */
        canRetry?: boolean | undefined;
        /** what else the SDK is to know for sending it, all strings */
        extraParam?: Readonly<Record<string, string>> | undefined;
    }
}

declare namespace NovaExtension.CloudDoc {
    /**
     * One upload. The object stays while its upload is under way, whether the page keeps it and listens or not.
     *
     * @remarks handed out by another object
     */
    interface UploadFileTask {
        /**
         * Starts the upload. Fails as well while it is under way.
         *
         * @throws 3 "task is null."
         * @throws 3 "task start failed."
         */
        start(): Answer<undefined>;
        /**
         * Cancels the upload. Fails as well when none is under way, unless the last one ended with `-1`.
         *
         * @throws 3 "task is null."
         * @throws 3 "task cancel failed."
         */
        cancel(): Answer<undefined>;
        /**
         * Cancels the upload, if one is under way or ended with `-1`, and starts it afresh.
         *
         * @throws 3 "task is null."
         * @throws 3 "task restart failed."
         */
        restart(): Answer<undefined>;
        /**
         * Adds a listener of the page. The same function is added once. The service has begun the upload.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "cloud.upload.started", callback: (payload: NovaExtension.CloudDoc.UploadFileTask.UploadBegin) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. How the upload stands, about once a second.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "cloud.upload.progressChanged", callback: (payload: NovaExtension.CloudDoc.UploadFileTask.UploadState) => void): void;
        /**
         * Adds a listener of the page. The same function is added once. The upload has ended, once: with status `1`,
         * `2` or `6`, or with `-1` when the service did not begin it or reports nothing of it any more.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "cloud.upload.finished", callback: (payload: NovaExtension.CloudDoc.UploadFileTask.UploadState) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. The service has begun the upload.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "cloud.upload.started", callback?: (payload: NovaExtension.CloudDoc.UploadFileTask.UploadBegin) => void): void;
        /**
         * Removes a listener of the page. How the upload stands, about once a second.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "cloud.upload.progressChanged", callback?: (payload: NovaExtension.CloudDoc.UploadFileTask.UploadState) => void): void;
        /**
         * Removes a listener of the page. The upload has ended, once: with status `1`, `2` or `6`, or with `-1` when
         * the service did not begin it or reports nothing of it any more.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "cloud.upload.finished", callback?: (payload: NovaExtension.CloudDoc.UploadFileTask.UploadState) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.CloudDoc.UploadFileTask {
    interface UploadBegin {
        /** the service's name for the upload */
        taskId: string;
    }
    interface UploadState {
        /** the service's name for the upload; empty when it did not begin it */
        taskId: string;
        /** an integer in decimal; `1`, `2` and `6` are final, `-1` that nothing is known of the upload */
        status: string;
        /** what the service says of the file */
        data: string;
        /** why it failed */
        uploadErrorCode: string;
        /** the kind of transfer */
        type: string;
    }
}

declare namespace NovaExtension.SettingsManager {
    /**
     * One settings store. A store keeps strings: numbers and booleans have become strings when the suite starts again.
     *
     * @remarks handed out by another object
     */
    interface Settings {
        /**
         * Stores a value: it is on disk when the call returns. Fails as well when the store is no settings file, or can
         * not be written; what it held stays.
         *
         * @throws 1 "missing required parameters."
         * @throws 3 "Setting is invalid."
         * @throws 1 "wrong parameters."
         */
        setValue(options: NovaExtension.SettingsManager.Settings.WriteOptions): Answer<undefined>;
        /**
         * Returns a stored value.
         *
         * @throws 1 "missing required parameters."
         * @throws 3 "Setting is invalid."
         * @throws 1 "wrong parameters."
         */
        getValue(options: NovaExtension.SettingsManager.Settings.ReadOptions): Answer<any>;
    }
}

declare namespace NovaExtension.SettingsManager.Settings {
    interface ReadOptions {
        /** the value's name */
        key: string;
        /** what is returned where there is no value */
        defaultValue?: unknown | undefined;
    }
    interface WriteOptions {
        /** the value's name; `/` separates groups */
        key: string;
        /** anything but null, a function, a native object or bytes */
        value: unknown;
    }
}

declare namespace NovaExtension.Account {
    /**
     * What the user's memberships allow, and its changes. Nobody has a privilege while no user is signed in.
     *
     * @remarks handed out by another object
     */
    interface Privilege {
        /**
         * Returns all privileges that the service knows, and which of them the current user has.
         *
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         */
        getPrivileges(): Answer<NovaExtension.Account.Privilege.Privilege[]>;
        /**
         * Returns whether the current user has a privilege.
         *
         * @param name a privilege; one that the service does not know nobody has
         * @throws 3 "Accountsdk is not initialized."
         * @throws 3 "Current account is not initialized."
         * @throws 1 "missing required parameters."
         * @throws 1 "wrong parameters."
         */
        hasPrivilege(name: string): Answer<boolean>;
        /**
         * Adds a listener of the page. The same function is added once. The user's membership privileges have changed.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: "event.privilege.info.changed", callback: (payload: NovaExtension.Account.Privilege.PrivilegeChange) => void): void;
        /**
         * Adds a listener of the page. The same function is added once.
         *
         * @param eventName the event
         * @param callback is called with what the event carries
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        addEventListener(eventName: string, callback: (...payload: any[]) => void): void;
        /**
         * Removes a listener of the page. The user's membership privileges have changed.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: "event.privilege.info.changed", callback?: (payload: NovaExtension.Account.Privilege.PrivilegeChange) => void): void;
        /**
         * Removes a listener of the page.
         *
         * @param eventName the event
         * @param callback the listener; without one all of the page's are removed
         * @throws 3 "Event service error."
         * @throws 1 "wrong parameters."
         */
        removeEventListener(eventName: string, callback?: (...payload: any[]) => void): void;
        /**
         * Calls the listeners of an event.
         *
         * @param eventName the event
         * @param isInsidePlugin whether only listeners of the calling page are called
         * @param payload what the listeners are called with
         * @throws 3 "Event service error."
         */
        dispatchEvent(eventName: string, isInsidePlugin?: boolean, ...payload: unknown[]): void;
        /**
         * Returns how many listeners each event has, over all pages.
         *
         * @throws 3 "Event service error."
         */
        getAllEventInfo(): any;
    }
}

declare namespace NovaExtension.Account.Privilege {
    interface Privilege {
        name: string;
        /** whether the user has it */
        isGranted: boolean;
        /** when that ends, in milliseconds since 1970 (UTC); 0 when it is not granted or does not end */
        expireTime: Int64;
    }
    interface PrivilegeChange {
        /** always `ok` */
        callstatus: string;
        /** what the service says of the change */
        data: Record<string, any>;
    }
}
