#include "framework/entry.h"

#include "cloud/js_api_account.h"
#include "cloud/js_api_cloudadapter.h"
#include "cloud/js_api_clouddoc.h"
#include "cloud/js_api_payment.h"
#include "cloud/js_api_syncfolder.h"
#include "framework/factory.h"
#include "local/js_api_bytebuffer.h"
#include "local/js_api_configcenter.h"
#include "local/js_api_crypto.h"
#include "local/js_api_event.h"
#include "local/js_api_filesystem.h"
#include "local/js_api_log.h"
#include "local/js_api_network.h"
#include "local/js_api_novaoffice.h"
#include "local/js_api_product.h"
#include "local/js_api_profile.h"
#include "local/js_api_settings.h"
#include "local/js_api_telemetrysdk.h"
#include "local/js_api_tools.h"
#include "local/js_api_utils.h"
#include "webui/js_api_panels.h"
#include "webui/js_api_pluginmanager.h"
#include "webui/js_api_remoteconfig.h"
#include "webui/js_api_skin.h"
#include "webui/js_api_webview.h"
#include "webui/js_api_webviewmgr.h"

namespace {

struct Row {
    const char* name;
    ExtensionFactory factory;
};

constexpr Row Objects[] = {
    { "Hive", sharedObjectFactory<KJsApiHive> },
    { "ByteBufferManager", sharedObjectFactory<KJsApiByteBufferManager> },
    { "FileSystem", sharedObjectFactory<KJsApiFileSystem> },
    { "Network", sharedObjectFactory<KJsApiNetwork> },
    { "Novaoffice", sharedObjectFactory<KJsApiNovaoffice> },
    { "TelemetrySdk", sharedObjectFactory<KJsApiTelemetrySdk> },
    { "Log", sharedObjectFactory<KJsApiLog> },
    { "ConfigCenter", sharedObjectFactory<KJsApiConfigCenter> },
    { "CirrusConfig", sharedObjectFactory<KJsApiCirrusConfig> },
    { "PluginManager", sharedObjectFactory<KJsApiPluginManager> },
    { "Webview", perPageObjectFactory<KJsApiWebview, InstanceMode::Webview> },
    { "WebviewMgr", sharedObjectFactory<KJsApiWebviewMgr> },
    { "Profile", sharedObjectFactory<KJsApiProfile> },
    { "Crypto", sharedObjectFactory<KJsApiCrypto> },
    { "CloudDoc", sharedObjectFactory<KJsApiCloudDoc> },
    { "SettingsManager", sharedObjectFactory<KJsApiSettingsManager> },
    { "Utils", sharedObjectFactory<KJsApiUtils> },
    { "Product", sharedObjectFactory<KJsApiProduct> },
    { "Tools", sharedObjectFactory<KJsApiTools> },
    { "Event", sharedObjectFactory<KJsApiEvent> },
    { "Payment", sharedObjectFactory<KJsApiPayment> },
    { "Skin", sharedObjectFactory<KJsApiSkin> },
    { "Account", sharedObjectFactory<KJsApiAccount> },
    { "CloudAdapter", sharedObjectFactory<KJsApiCloudAdapter> },
    { "AiDocsChat", perPageObjectFactory<KJsApiAiDocsChat, InstanceMode::PerPage> },
    { "SyncFolder", sharedObjectFactory<KJsApiSyncFolder> },
    { "WebDocsControl", sharedObjectFactory<KJObjWebDocsControl> },
    { "KContract", perPageObjectFactory<KJObjContract, InstanceMode::PerPage> },
};

} // namespace

void GetNovaExtensionJsApiObj(ExtensionFactoryMap* factories)
{
    if (!factories)
        return;
    // The keys stay with the suite when this library has gone, so they must not lie in its static data.
    for (const Row& row : Objects)
        (*factories)[QString::fromLatin1(row.name)] = row.factory;
}
