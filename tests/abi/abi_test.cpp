// What the library promises to a suite, checked by direct calls and by position in the virtual tables.
#include "tests/abi/spy.h"
#include "tests/support/library.h"
#include "tests/support/suite.h"

#include <array>
#include <bit>
#include <dlfcn.h>

namespace {

/// A string of which the suite says that it is longer than any can be.
const char16_t* endless = nullptr;

} // namespace

// The library looks its JS core up here: a program's own definition comes before the suite's.
std::uint32_t _XSysStringLen(const char16_t* text)
{
    static const auto suites =
        reinterpret_cast<std::uint32_t (*)(const char16_t*)>(dlsym(RTLD_NEXT, __func__));
    return text && text == endless ? 0x80000000u : suites(text);
}

namespace vexlite {
IVEXJSCore* GetVEXJSCore()
{
    return Spy::instance();
}
} // namespace vexlite

namespace {

const char* const Names[] = { "AiDocsChat", "Account", "ByteBufferManager", "CirrusConfig", "CloudAdapter",
    "CloudDoc", "ConfigCenter", "Crypto", "Event", "FileSystem", "Hive", "KContract", "Log", "Network",
    "Novaoffice", "Payment", "PluginManager", "Product", "Profile", "SettingsManager", "Skin", "SyncFolder",
    "TelemetrySdk", "Tools", "Utils", "WebDocsControl", "Webview", "WebviewMgr" };

ExtensionFactoryMap filledMap()
{
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);
    return factories;
}

/// An interface identifier by its four words, as those compare it who were built long ago.
KIID identifier(std::uint32_t first, std::uint32_t second, std::uint32_t third, std::uint32_t fourth)
{
    return std::bit_cast<KIID>(std::array { first, second, third, fourth });
}
const KIID IUnknownId = identifier(0, 0, 0xC0, 0x46000000);

/// Calls operation `slot` of an object's virtual table, counted from 1.
template <typename Result, typename... Arguments>
Result callSlot(void* object, int slot, Arguments... arguments)
{
    using Operation = Result (*)(void*, Arguments...);
    void** table = *static_cast<void***>(object);
    return reinterpret_cast<Operation>(table[slot - 1])(object, arguments...);
}

/// How many references an object has.
std::uint32_t references(IJSExtentionObject* object)
{
    object->AddRef();
    return object->Release();
}

class Abi : public testing::Test {
protected:
    IJSExtentionObject* object(const char* name) { return page.object(name).object.get(); }
    void publish(IJSExtentionObject* of) const
    {
        IJSMemberList* list = nullptr;
        EXPECT_EQ(of->GetMemberTable(page.context, &list), KR_OK);
        list->Release();
    }

    vexlite::Core& core = support::libraryCore();
    support::Page page { core };
    Spy& spy = *Spy::instance();
    KJSVariant result;
    KJSVariant exception;
};

TEST_F(Abi, EntryFillsTheFactoriesOverWhatIsThere)
{
    GetNovaExtensionJsApiObj(nullptr);
    ExtensionFactoryMap factories;
    const ExtensionFactory own = [](std::int64_t, std::int64_t) -> KResult { return 0; };
    factories[QStringLiteral("Own")] = own;
    factories[QStringLiteral("Log")] = own;
    const ExtensionFactoryMap shared = factories;
    GetNovaExtensionJsApiObj(&factories);
    EXPECT_EQ(shared.keys().join(u' '), QStringLiteral("Log Own"))
        << "a map that shared its data keeps its old content";
    EXPECT_EQ(factories.take(QStringLiteral("Own")), own);
    EXPECT_NE(factories.value(QStringLiteral("Log")), own);
    QStringList more = factories.keys();
    for (const char* name : Names)
        EXPECT_TRUE(factories.value(QLatin1String(name)) && more.removeOne(QLatin1String(name)))
            << name << " is missing";
    EXPECT_EQ(more.join(u' ').toStdString(), "") << "are too many";
    const ExtensionFactoryMap once = factories;
    GetNovaExtensionJsApiObj(&factories);
    EXPECT_EQ(factories, once);
}

TEST_F(Abi, FactoriesShareOrMakeInstances)
{
    for (const std::string_view name : Names) {
        const std::uint32_t expected = name == "Webview"  ? 1
            : name == "AiDocsChat" || name == "KContract" ? 2
                                                          : 3;
        spy.takeAsked();
        vexlite::BoundObject first = core.bindObject(page.context, QLatin1String(name.data()));
        EXPECT_EQ(spy.takeAsked().join(u',').toStdString(), "registry,trace hook") << name;
        vexlite::BoundObject second = core.bindObject(page.context, QLatin1String(name.data()));
        ASSERT_TRUE(first.object && second.object) << name;
        std::uint32_t mode = 99;
        first.object->GetInstanceMode(&mode);
        EXPECT_EQ(mode, expected) << name;
        EXPECT_EQ(first.object.get() == second.object.get(), expected == 3) << name;
        EXPECT_EQ(references(first.object.get()), expected == 3 ? 3u : 1u) << name;
        second = {};
        EXPECT_EQ(references(first.object.get()), expected == 3 ? 2u : 1u) << name;
    }
}

TEST_F(Abi, WithoutAJsCoreEverythingIsNotAvailable)
{
    IJSExtentionObject* crypto = object("Crypto");
    spy.isAbsent = true;
    for (const ExtensionFactory factory : filledMap())
        EXPECT_EQ(factory(1, 2), 0x80000008u);
    IJSMemberList* list = nullptr;
    JSApiArguments none;
    EXPECT_EQ(crypto->GetMemberTable(page.context, &list), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->InvokeMethod(page.context, 0, none, result, 0, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->InvokePropertyGet(page.context, 0, 0, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->InvokePropertyPut(page.context, 0, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->GetTypeId(), KR_NOT_AVAILABLE);
    KJSVariant untouched = KJSVariant::fromInt32(1);
    EXPECT_EQ(
        KNovaExtensionUtils::setPromiseReject(page.context, untouched, QStringLiteral("no")), KR_REJECTED);
    EXPECT_EQ(untouched.type(), MV_INT32);
    spy.isAbsent = false;
    const std::int64_t id = crypto->GetTypeId();
    EXPECT_GT(id, 0);
    EXPECT_EQ(crypto->GetTypeId(), id) << "asked for once";
}

TEST_F(Abi, ObjectSlotsStandInTheirOrder)
{
    IJSExtentionObject* utils = object("Utils");
    const JSContextEnv& context = page.context;
    void* found = nullptr;
    for (const KIID& id : { identifier(0x42710844, 0x463E66D0, 0xC2C1F093, 0x6D98FD82), IUnknownId }) {
        EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, id, &found)), KR_OK);
        EXPECT_EQ(found, utils);
    }
    EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, IID_IJSONValue, &found)), 0x80000004u);
    EXPECT_EQ(found, nullptr);
    utils->Release();
    utils->Release();
    EXPECT_EQ(callSlot<std::uint32_t>(utils, 2), 3u);
    EXPECT_EQ(callSlot<std::uint32_t>(utils, 3), 2u);
    EXPECT_EQ(callSlot<std::int64_t>(utils, 6), utils->GetTypeId());
    IJSMemberList* list = nullptr;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, IJSMemberList**>(utils, 10, context, &list)), KR_OK);
    list->Release();
    spy.takeOperations();
    using Context = const JSContextEnv&;
    using Value = KJSVariant&;
    const auto get = &callSlot<KResult, Context, std::int32_t, std::int64_t, Value, Value>;
    EXPECT_EQ(get(utils, 7, context, 0, 8, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(spy.takeOperations(), "find 0 1,completed 0 8");
    const auto put = &callSlot<KResult, Context, std::int32_t, Value, Value>;
    EXPECT_EQ(put(utils, 8, context, 0, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(spy.takeOperations(), "find 0 2");
    JSApiArguments none;
    const auto invoke =
        &callSlot<KResult, Context, std::int32_t, JSApiArguments&, Value, std::int64_t, Value>;
    EXPECT_EQ(invoke(utils, 9, context, 0, none, result, 55, exception), KR_REJECTED);
    EXPECT_EQ(spy.takeOperations(), "find 0 0,completed 0 55");
    EXPECT_EQ(callSlot<void*>(utils, 11), nullptr);
    callSlot<void>(utils, 12);
    callSlot<void, void*>(utils, 13, this);
    EXPECT_EQ(callSlot<void*>(utils, 11), this);
    callSlot<void, void*>(utils, 13, nullptr);
    callSlot<void, std::uint32_t>(utils, 15, 42);
    callSlot<void, std::uint32_t*>(utils, 14, nullptr);
    std::uint32_t mode = 0;
    callSlot<void, std::uint32_t*>(utils, 14, &mode);
    EXPECT_EQ(mode, 42u);
    utils->SetInstanceMode(3);
}

TEST_F(Abi, ATableIsFilledOnceAndPublishedEachTime)
{
    IJSExtentionObject* contract = object("KContract");
    const vexlite::BoundObject another = core.bindObject(page.context, QStringLiteral("KContract"));
    spy.takeOperations();
    publish(contract);
    publish(another.object.get());
    EXPECT_EQ(spy.takeOperations(), "publish 2,publish 2");
    core.setDenyMask(0xffffffff);
    publish(contract);
    core.setDenyMask(0);
    publish(contract);
    EXPECT_EQ(spy.takeOperations(), "publish 0,publish 2");
}

TEST_F(Abi, AnEnvelopeIsAnOrderedObject)
{
    JSApiArguments none;
    ASSERT_EQ(object("Log")->InvokeMethod(page.context, 0, none, result, 0, exception), KR_REJECTED);
    auto* failed = static_cast<IJSONValue*>(exception.raw().punkVal);
    void* found = nullptr;
    for (const KIID& id : { identifier(0x4770436A, 0x49095E29, 0xDBD8388F, 0x0E95BB0B),
             identifier(0x75C124DE, 0x11EE6967, 0x83AFEEB1, 0x337F9168), IUnknownId }) {
        EXPECT_EQ(failed->QueryInterface(id, &found), KR_OK);
        ASSERT_EQ(found, failed);
        failed->Release();
    }
    EXPECT_EQ(failed->QueryInterface(IID_IJSExtentionObject, &found), KR_NO_INTERFACE);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(callSlot<std::int32_t>(failed, 4), 3);
    KJSVariant keys[5], values[5];
    EXPECT_EQ(failed->CopyOut(0, keys, values), 0);
    EXPECT_EQ(failed->CopyOut(-1, keys, values), 0);
    EXPECT_EQ(
        (callSlot<std::int32_t, std::int32_t, KJSVariant*, KJSVariant*>(failed, 5, 5, keys, values)), 3);
    EXPECT_EQ(keys[0].text(), u"code");
    EXPECT_EQ(values[0].raw().lVal, 1);
    EXPECT_EQ(values[1].text(), u"missing required parameters.");
    EXPECT_EQ(values[2].raw().boolVal, 0);
    const QString code = QStringLiteral("code"), own = QStringLiteral("aa");
    EXPECT_TRUE((callSlot<bool, const QString&>(failed, 8, code)));
    EXPECT_EQ((callSlot<KResult, const QString&, KJSVariant&>(failed, 9, own, keys[0])), KR_NOT_AVAILABLE);
    EXPECT_TRUE(keys[0].isEmpty());
    callSlot<void, const QString&, bool>(failed, 13, own, true);
    EXPECT_EQ((callSlot<std::int32_t, const QString&, std::int32_t>(failed, 19, code, 7)), 1);
    callSlot<void, const QString&, std::int32_t>(failed, 14, own, 5);
    EXPECT_EQ((callSlot<std::int64_t, const QString&, std::int64_t>(failed, 20, own, 7)), 5);
    callSlot<void, const QString&, std::int64_t>(failed, 15, own, std::int64_t { 1 } << 60);
    EXPECT_EQ(failed->GetInt32(own, 7), 7) << "what does not fit reads as the fallback";
    EXPECT_EQ(failed->GetInt64(own, 7), std::int64_t { 1 } << 60);
    callSlot<void, const QString&, double>(failed, 16, own, 0.5);
    EXPECT_EQ((callSlot<double, const QString&, double>(failed, 21, own, 7)), 0.5);
    EXPECT_EQ(failed->GetString(own, {}), QStringLiteral("0.5"));
    EXPECT_TRUE(failed->Remove(QStringLiteral("success")));
    EXPECT_FALSE(failed->Remove(QStringLiteral("success")));
    QStringList names { QStringLiteral("before") };
    callSlot<void, QStringList&>(failed, 7, names);
    EXPECT_EQ(names.join(u' '), QStringLiteral("before aa code msg"));
    EXPECT_EQ(support::json(exception), R"({"aa":0.5,"code":1,"msg":"missing required parameters."})");
    callSlot<void>(failed, 6);
    EXPECT_EQ(failed->Count(), 0);
}

TEST_F(Abi, EventMembersGoToTheHubOfTheClass)
{
    const auto text = [](const char16_t* given) { return KJSVariant::fromString(given); };
    MVARIANT reference {};
    const KJSVariant target = text(u"behind");
    MVARIANT behind = target.raw();
    reference.vt = MV_BYREF_VARIANT;
    reference.pvarVal = &behind;
    MVARIANT narrow {};
    narrow.vt = MV_LPSTR;
    narrow.pszVal = "narrow";
    const KJSVariant e = text(u"e"), one = KJSVariant::fromInt32(1), tooLong = text(u"e");
    endless = tooLong.raw().bstrVal;
    const KJSVariant yes = KJSVariant::fromBool(true), no = KJSVariant::fromBool(false);
    const struct {
        std::vector<KJSVariant> dispatched;
        const char* heard;
    } rows[] = {
        { { e }, "page e 0 " },
        { { e, no }, "page e 0 other e 0 " },
        { { e, yes, e, no }, "page e 2 " },
        { { e, KJSVariant::fromInt32(0), e }, "page e 1 other e 1 " },
        { { e, KJSVariant(), e }, "page e 1 " },
        { { one }, "page 1 0 " },
        { { KJSVariant(reference, nullptr) }, "page behind 0 " },
        { { KJSVariant(narrow, nullptr) }, "page narrow 0 " },
        { { tooLong }, "page  0 " },
        { {}, "page  0 " },
    };
    support::Page other(core);
    const vexlite::BoundObject& folder = page.object("SyncFolder");
    std::string heard;
    const auto listener = [&](support::Page& by, const std::string& note) {
        return support::function(by.context, 1, [&heard, note](const JSApiArguments& payload) {
            heard += note + std::to_string(payload.size()) + ' ';
            return KR_OK;
        });
    };
    for (const std::string event : { "e", "1", "behind", "narrow", "" }) {
        const KJSVariant name = support::value(QString::fromStdString(event));
        page.call(folder, "addEventListener", { name, listener(page, "page " + event + ' ') });
        other.call(folder, "addEventListener", { name, listener(other, "other " + event + ' ') });
    }
    for (const auto& row : rows) {
        EXPECT_EQ(page.call(folder, "dispatchEvent", row.dispatched), "");
        EXPECT_EQ(std::exchange(heard, {}), row.heard);
        EXPECT_TRUE(page.result.isEmpty());
    }
    endless = nullptr;
    EXPECT_NE(page.call(folder, "addEventListener", { e, one }), "") << "the hub's refusal";
    page.call(folder, "getAllEventInfo");
    EXPECT_EQ(page.result.type(), MV_ARRAY) << "the hub's report is the answer, without an envelope";
    page.call(folder, "removeEventListener", { e, listener(page, "") });
    page.call(folder, "removeEventListener", { one });
    for (const KJSVariant& event : { e, one })
        page.call(folder, "dispatchEvent", { event, no });
    EXPECT_EQ(heard, "other e 0 other 1 0 ");
}

struct NoCloudService final : IKCloudIpcService {
    QString invoke(const QString&, const KCloudIpcArg&, QObject*, const QString&) override { return {}; }
};

TEST_F(Abi, ServicesNeedTheApplicationOfTheSuite)
{
    NoCloudService service;
    support::cloudIpc = &service;
    const auto call = [&] { return page.call("CloudDoc", "getDefaultWorkSpace"); };
    const auto bridges = [&] {
        return page.call("AiDocsChat", "qaNotify") + "; " + page.call("KContract", "registerCallback") + "; "
            + page.call("WebDocsControl", "notifySetupFinished");
    };
    ASSERT_FALSE(QCoreApplication::instance());
    EXPECT_EQ(call(), "3 Cloud service error.");
    EXPECT_EQ(bridges(), "3 handle is null; 3 handle is null; 3 handle is null");
    for (const char* member : { "isLoggedIn", "login", "addLoginListener" })
        EXPECT_EQ(page.call("Account", member), "3 empty handle.");
    {
        int count = 0;
        const QCoreApplication other(count, nullptr);
        EXPECT_EQ(call(), "3 Cloud service error.");
        EXPECT_EQ(bridges(), "1 Invalid argument; 1 Invalid argument; 3 empty core app.");
    }
    support::application();
    EXPECT_EQ(bridges(), "1 Invalid argument; 1 Invalid argument; 1 missing required parameters.");
    EXPECT_EQ(call(), "3 Get account SDK error.") << "the service is there";
    support::cloudIpc = nullptr;
    EXPECT_EQ(call(), "3 Cloud service error.");
}

/// A JS core that calls a member's function without an object.
TEST_F(Abi, BridgesRefuseToBeNoObject)
{
    const std::pair<const char*, std::int32_t> rows[] = { { "AiDocsChat", 2 }, { "KContract", 2 },
        { "WebDocsControl", 1 } };
    for (const auto& [name, count] : rows) {
        for (std::int32_t i = 0; i < count; ++i) {
            const auto invoke = reinterpret_cast<JSMethodInvoke>(page.object(name).members->Invoke(i));
            JSApiArguments none;
            EXPECT_EQ(invoke(nullptr, page.context, none, result, exception), KR_REJECTED);
            EXPECT_EQ(support::failure(exception), "3 pThis is null") << name;
        }
    }
}

TEST_F(Abi, ProfileReportsTheBrowserAndNoNegativeDuration)
{
    vexlite::BrowserFacts facts;
    facts.applicationId = QStringLiteral("app");
    facts.sessionId = QStringLiteral("session");
    facts.browserId = QStringLiteral("browser");
    facts.times = { 100, 130, 500, 570, 400 }; // its load finished before it started
    facts.groupMark1 = 1000;
    facts.groupMark2 = 1025;
    core.updateBrowser(page.context, facts);
    EXPECT_EQ(page.call("Profile", "getProfileInfo"),
        R"({"c_cb":30,"c_cb_ts":100,"c_cbf_ts":130,"c_l":0,"c_l_ts":500,"c_lf_ts":400})");
    EXPECT_EQ(page.call("Profile", "getBrowserTraceInfo"),
        R"({"appid":"app","browserid":"browser","c_cb":30,"c_cb_ld":25,"c_cb_ld_ts":1000,"c_cb_ts":100,)"
        R"("c_cbf_ts":130,"c_l":0,"c_l_rd":70,"c_l_rd_ts":570,"c_l_ts":500,"c_lf_ts":400,"pid":)"
            + std::to_string(QCoreApplication::applicationPid()) + R"(,"sessionid":"session"})");
}

TEST_F(Abi, PromisesAreRejectedByTheService)
{
    EXPECT_EQ(
        KNovaExtensionUtils::setPromiseReject(page.context, result, QStringLiteral("why")), KR_REJECTED);
    EXPECT_EQ(page.settled, std::vector<std::string> { "rejected: 3 why" });
    EXPECT_FALSE(result.isEmpty());
}

} // namespace
