#include "framework/entry.h"

#include "cloud/js_api_account.h"
#include "cloud/js_api_cloudadapter.h"
#include "cloud/js_api_clouddoc.h"
#include "cloud/js_api_payment.h"
#include "cloud/js_api_syncfolder.h"
#include "framework/factory.h"
#include "framework/objects.h"
#include "local/js_api_bytebuffer.h"
#include "local/js_api_configcenter.h"
#include "local/js_api_crypto.h"
#include "local/js_api_event.h"
#include "local/js_api_filesystem.h"
#include "local/js_api_log.h"
#include "local/js_api_novaoffice.h"
#include "local/js_api_product.h"
#include "local/js_api_profile.h"
#include "local/js_api_settings.h"
#include "local/js_api_telemetrysdk.h"
#include "local/js_api_tools.h"
#include "local/js_api_utils.h"
#include "local/network/js_api_network.h"
#include "webui/js_api_panels.h"
#include "webui/js_api_pluginmanager.h"
#include "webui/js_api_remoteconfig.h"
#include "webui/js_api_skin.h"
#include "webui/js_api_webdocscontrol.h"
#include "webui/js_api_webview.h"
#include "webui/js_api_webviewmgr.h"

namespace jsapi {

namespace {

template <typename T> constexpr RegisteredObject shared(const char* name)
{
    return { name, sharedObjectFactory<T>, InstanceMode::Shared, &T::members };
}

template <typename T, std::uint32_t Mode> constexpr RegisteredObject perPage(const char* name)
{
    return { name, perPageObjectFactory<T, Mode>, Mode, &T::members };
}

constexpr RegisteredObject Objects[] {
    shared<KJsApiHive>("Hive"),
    shared<KJsApiByteBufferManager>("ByteBufferManager"),
    shared<KJsApiFileSystem>("FileSystem"),
    shared<KJsApiNetwork>("Network"),
    shared<KJsApiNovaoffice>("Novaoffice"),
    shared<KJsApiTelemetrySdk>("TelemetrySdk"),
    shared<KJsApiLog>("Log"),
    shared<KJsApiConfigCenter>("ConfigCenter"),
    shared<KJsApiCirrusConfig>("CirrusConfig"),
    shared<KJsApiPluginManager>("PluginManager"),
    perPage<KJsApiWebview, InstanceMode::Webview>("Webview"),
    shared<KJsApiWebviewMgr>("WebviewMgr"),
    shared<KJsApiProfile>("Profile"),
    shared<KJsApiCrypto>("Crypto"),
    shared<KJsApiCloudDoc>("CloudDoc"),
    shared<KJsApiSettingsManager>("SettingsManager"),
    shared<KJsApiUtils>("Utils"),
    shared<KJsApiProduct>("Product"),
    shared<KJsApiTools>("Tools"),
    shared<KJsApiEvent>("Event"),
    shared<KJsApiPayment>("Payment"),
    shared<KJsApiSkin>("Skin"),
    shared<KJsApiAccount>("Account"),
    shared<KJsApiCloudAdapter>("CloudAdapter"),
    perPage<KJsApiAiDocsChat, InstanceMode::PerPage>("AiDocsChat"),
    shared<KJsApiSyncFolder>("SyncFolder"),
    shared<KJObjWebDocsControl>("WebDocsControl"),
    perPage<KJObjContract, InstanceMode::PerPage>("KContract"),
};

} // namespace

std::span<const RegisteredObject> registeredObjects()
{
    return Objects;
}

} // namespace jsapi

void GetNovaExtensionJsApiObj(ExtensionFactoryMap* factories)
{
    if (!factories)
        return;
    for (const jsapi::RegisteredObject& object : jsapi::registeredObjects())
        (*factories)[heapString(object.name)] = object.factory;
}
