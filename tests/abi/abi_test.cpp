// What the library promises to a suite, checked by direct calls and by position in the virtual tables.
#include "tests/abi/fakecore.h"
#include "vexlite/registrymap.h"

#include <gtest/gtest.h>
#include <set>

extern "C" void GetNovaExtensionJsApiObj(ExtensionFactoryMap* factories);

class KNovaExtensionUtils {
public:
    static KResult setPromiseReject(const JSContextEnv& context, KJSVariant& result, const QString& message);
};

// The library looks its JS core up here: a program's own definition comes before the suite's.
namespace vexlite {
IVEXJSCore* GetVEXJSCore()
{
    return FakeCore::current;
}
} // namespace vexlite

namespace {

constexpr JSContextEnv Page { 4, 9 };

const char* const Names[] = { "Hive", "ByteBufferManager", "FileSystem", "Network", "Novaoffice",
    "TelemetrySdk", "Log", "ConfigCenter", "CirrusConfig", "PluginManager", "Webview", "WebviewMgr",
    "Profile", "Crypto", "CloudDoc", "SettingsManager", "Utils", "Product", "Tools", "Event", "Payment",
    "Skin", "Account", "CloudAdapter", "AiDocsChat", "SyncFolder", "WebDocsControl", "KContract" };

ExtensionFactoryMap filledMap()
{
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);
    return factories;
}

/// Calls operation `slot` of an object's virtual table, counted from 1.
template <typename Result, typename... Arguments>
Result callSlot(void* object, int slot, Arguments... arguments)
{
    using Operation = Result (*)(void*, Arguments...);
    void** table = *static_cast<void***>(object);
    return reinterpret_cast<Operation>(table[slot - 1])(object, arguments...);
}

class Abi : public testing::Test {
protected:
    /// The object of a short name, with the reference that its factory handed over.
    IJSExtentionObject* object(const char* name)
    {
        EXPECT_EQ(filledMap().value(QLatin1String(name))(1, 2), KR_OK);
        IJSExtentionObject* made = core.bound.back();
        core.takeOperations();
        return made;
    }

    FakeMemberList* publish(IJSExtentionObject* of)
    {
        IJSMemberList* list = nullptr;
        EXPECT_EQ(of->GetMemberTable(Page, &list), KR_OK);
        return static_cast<FakeMemberList*>(list);
    }

    /// Calls a member by name; the arguments are values.
    KResult call(IJSExtentionObject* of, const char16_t* name, std::vector<KJSVariant> values = {})
    {
        FakeMemberList* list = publish(of);
        KResult status = KR_NOT_AVAILABLE;
        for (std::int32_t id = 0; id < list->Count(); ++id) {
            if (std::u16string_view(list->Name(id)) != name)
                continue;
            JSApiArguments arguments(values.data(), values.size());
            core.takeOperations();
            status = of->InvokeMethod(Page, id, arguments, result, 321, exception);
        }
        list->Release();
        return status;
    }

    FakeCore core;
    KJSVariant result;
    KJSVariant exception;
};

TEST_F(Abi, EntryIgnoresANullMap)
{
    GetNovaExtensionJsApiObj(nullptr);
}

TEST_F(Abi, EntryFillsTwentyEightFactoriesOverWhatIsThere)
{
    ExtensionFactoryMap factories;
    const ExtensionFactory own = [](std::int64_t, std::int64_t) -> KResult { return 0; };
    factories[QStringLiteral("Own")] = own;
    factories[QStringLiteral("Log")] = own;
    const ExtensionFactoryMap shared = factories;
    GetNovaExtensionJsApiObj(&factories);
    for (const char* name : Names)
        EXPECT_TRUE(factories.value(QLatin1String(name))) << name;
    EXPECT_EQ(factories.size(), 29);
    EXPECT_EQ(factories.value(QStringLiteral("Own")), own);
    EXPECT_NE(factories.value(QStringLiteral("Log")), own);
    EXPECT_EQ(shared.size(), 2) << "a map that shared its data keeps its old content";
    const ExtensionFactoryMap once = factories;
    GetNovaExtensionJsApiObj(&factories);
    EXPECT_EQ(factories, once);
}

TEST_F(Abi, FactoriesShareOrMakeInstances)
{
    const ExtensionFactoryMap factories = filledMap();
    for (const char* name : Names) {
        const std::string_view text(name);
        const std::uint32_t expected = text == "Webview"  ? 1
            : text == "AiDocsChat" || text == "KContract" ? 2
                                                          : 3;
        core.bound.clear();
        core.takeOperations();
        ASSERT_EQ(factories.value(QLatin1String(name))(-5, 7), KR_OK);
        ASSERT_EQ(factories.value(QLatin1String(name))(-5, 7), KR_OK);
        EXPECT_EQ(
            core.operations, QStringList({ QStringLiteral("bind -5 7 0"), QStringLiteral("bind -5 7 0") }));
        IJSExtentionObject* first = core.bound.at(0);
        IJSExtentionObject* second = core.bound.at(1);
        std::uint32_t mode = 99;
        first->GetInstanceMode(&mode);
        EXPECT_EQ(mode, expected) << name;
        EXPECT_EQ(first == second, expected == 3) << name;
        EXPECT_EQ(first->AddRef(), expected == 3 ? 4u : 2u) << name;
        first->Release();
        EXPECT_EQ(first->Release(), expected == 3 ? 2u : 0u) << name;
        EXPECT_EQ(second->Release(), expected == 3 ? 1u : 0u) << name;
    }
}

TEST_F(Abi, WithoutAJsCoreEverythingAnswersNotAvailable)
{
    IJSExtentionObject* log = object("Log");
    FakeCore::current = nullptr;
    for (const ExtensionFactory factory : filledMap())
        EXPECT_EQ(factory(1, 2), KR_NOT_AVAILABLE);
    IJSMemberList* list = nullptr;
    JSApiArguments none;
    EXPECT_EQ(log->GetMemberTable(Page, &list), KR_NOT_AVAILABLE);
    EXPECT_EQ(log->InvokeMethod(Page, 0, none, result, 0, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(log->InvokePropertyGet(Page, 0, 0, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(log->InvokePropertyPut(Page, 0, result, exception), KR_NOT_AVAILABLE);
    KJSVariant untouched = KJSVariant::fromInt32(1);
    EXPECT_EQ(KNovaExtensionUtils::setPromiseReject(Page, untouched, QStringLiteral("no")), KR_REJECTED);
    EXPECT_EQ(untouched.type(), MV_INT32);
    log->Release();
}

TEST_F(Abi, TypeIdIsAskedForOnceAndOnlyWithAJsCore)
{
    IJSExtentionObject* crypto = object("Crypto");
    FakeCore::current = nullptr;
    EXPECT_EQ(crypto->GetTypeId(), 0x80000008);
    FakeCore::current = &core;
    const std::int64_t id = crypto->GetTypeId();
    EXPECT_GE(id, 100);
    EXPECT_EQ(crypto->GetTypeId(), id);
    crypto->Release();
}

TEST_F(Abi, ObjectSlotsStandInTheirOrder)
{
    IJSExtentionObject* utils = object("Utils");
    void* found = nullptr;
    const KIID objectId = IID_IJSExtentionObject;
    EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, objectId, &found)), KR_OK);
    EXPECT_EQ(found, utils);
    EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, IID_IUnknown, &found)), KR_OK);
    EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, IID_IJSONValue, &found)), KR_NO_INTERFACE);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(callSlot<std::uint32_t>(utils, 2), 5u);
    EXPECT_EQ(callSlot<std::uint32_t>(utils, 3), 4u);
    EXPECT_EQ(callSlot<std::int64_t>(utils, 6), utils->GetTypeId());
    IJSMemberList* list = nullptr;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, IJSMemberList**>(utils, 10, Page, &list)), KR_OK);
    core.takeOperations();
    KJSVariant value;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, std::int32_t, std::int64_t, KJSVariant&, KJSVariant&>(
                  utils, 7, Page, 0, 8, value, exception)),
        KR_NOT_AVAILABLE);
    EXPECT_EQ(core.takeOperations(),
        QStringList({ QStringLiteral("find 0 1"), QStringLiteral("completed 9 0 8") }));
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, std::int32_t, KJSVariant&, KJSVariant&>(
                  utils, 8, Page, 0, value, exception)),
        KR_NOT_AVAILABLE);
    EXPECT_EQ(core.takeOperations(), QStringList({ QStringLiteral("find 0 2") }));
    JSApiArguments none;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, std::int32_t, JSApiArguments&, KJSVariant&,
                  std::int64_t, KJSVariant&>(utils, 9, Page, 0, none, value, 55, exception)),
        KR_REJECTED);
    EXPECT_EQ(core.takeOperations(),
        QStringList({ QStringLiteral("find 0 0"), QStringLiteral("completed 9 0 55") }));
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
    list->Release();
    utils->Release();
    utils->Release();
    utils->Release();
}

TEST_F(Abi, ATableIsFilledOnceAndPublishedEachTime)
{
    IJSExtentionObject* first = object("KContract");
    IJSExtentionObject* second = object("KContract");
    publish(first)->Release();
    const int added = core.added;
    EXPECT_EQ(added, 2);
    EXPECT_EQ(
        core.takeOperations(), QStringList({ QStringLiteral("assign 2"), QStringLiteral("publish 2") }));
    publish(second)->Release();
    EXPECT_EQ(core.added, added);
    core.takeOperations();
    core.tracing = true;
    publish(first)->Release();
    EXPECT_EQ(core.takeOperations(),
        QStringList({ QStringLiteral("filter NovaExtension.KContract"), QStringLiteral("publish 2") }));
    core.filtering = true;
    publish(first)->Release();
    EXPECT_EQ(core.takeOperations(),
        QStringList({ QStringLiteral("filter NovaExtension.KContract"), QStringLiteral("publish 1") }));
    core.filtering = false;
    FakeMemberList* whole = publish(first);
    EXPECT_EQ(whole->Count(), 2) << "a filtered copy leaves the class's table whole";
    whole->Release();
    first->Release();
    second->Release();
}

TEST_F(Abi, EveryMemberCarriesAWholeDescriptor)
{
    const std::set<std::int32_t> results { 0, 11, 12, 13, 27, 0x8004 };
    const std::set<std::uint64_t> types { 8, 11, 12, 13, 0x8004 };
    int members = 0;
    for (const char* name : Names) {
        IJSExtentionObject* of = object(name);
        FakeMemberList* list = publish(of);
        std::set<std::u16string> seen;
        const bool hasEvents =
            list->Count() >= 4 && std::u16string(list->Name(list->Count() - 1)) == u"getAllEventInfo";
        for (std::int32_t i = 0; i < list->Count(); ++i) {
            ++members;
            EXPECT_TRUE(seen.insert(list->Name(i)).second) << name;
            EXPECT_TRUE(list->Invoke(i)) << name;
            EXPECT_TRUE(results.count(list->ResultType(i))) << name << i;
            const bool generic = hasEvents && i >= list->Count() - 4;
            EXPECT_EQ(list->Mask(i) == 0 && list->ResultType(i) % 27 == 0, generic) << name << i;
            for (std::int32_t p = 0; p < list->ParameterCount(i); ++p) {
                const JSParameter parameter = list->Parameter(i, p);
                EXPECT_TRUE(types.count(parameter.type)) << name << i;
                EXPECT_EQ(parameter.name != nullptr, generic) << name << i;
                EXPECT_EQ(parameter.reserved, 0u);
            }
        }
        list->Release();
        of->Release();
    }
    EXPECT_EQ(members, 264);
}

TEST_F(Abi, ACallIsNoticedMadeAndCompleted)
{
    IJSExtentionObject* log = object("Log");
    core.tracing = true;
    EXPECT_EQ(call(log, u"logInfo"), KR_REJECTED);
    EXPECT_EQ(core.takeOperations(),
        QStringList({ QStringLiteral("find 0 0"), QStringLiteral("notice NovaExtension.Log.logInfo"),
            QStringLiteral("completed 9 0 321") }));
    EXPECT_TRUE(result.isEmpty()) << "a failure leaves the result unset";
    log->Release();
}

TEST_F(Abi, AnEnvelopeIsAnOrderedObject)
{
    IJSExtentionObject* log = object("Log");
    ASSERT_EQ(call(log, u"logInfo"), KR_REJECTED);
    auto* failure = static_cast<IJSONValue*>(exception.raw().punkVal);
    void* found = nullptr;
    for (const KIID& id : { IID_IJSONValue, IID_IJSONValueBase, IID_IUnknown }) {
        EXPECT_EQ(failure->QueryInterface(id, &found), KR_OK);
        failure->Release();
    }
    EXPECT_EQ(failure->QueryInterface(IID_IJSExtentionObject, &found), KR_NO_INTERFACE);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(callSlot<std::int32_t>(failure, 4), 3);
    KJSVariant keys[5], values[5];
    EXPECT_EQ(failure->CopyOut(0, keys, values), 0);
    EXPECT_EQ(failure->CopyOut(-1, keys, values), 0);
    EXPECT_EQ(
        (callSlot<std::int32_t, std::int32_t, KJSVariant*, KJSVariant*>(failure, 5, 5, keys, values)), 3);
    EXPECT_EQ(keys[0].text(), u"code");
    EXPECT_EQ(values[0].raw().lVal, 1);
    EXPECT_EQ(values[1].text(), u"missing required parameters.");
    EXPECT_EQ(values[2].raw().boolVal, 0);
    QStringList names { QStringLiteral("before") };
    callSlot<void, QStringList&>(failure, 7, names);
    EXPECT_EQ(names.join(QLatin1Char(' ')), QStringLiteral("before code msg success"));
    const QString code = QStringLiteral("code"), absent = QStringLiteral("absent"),
                  own = QStringLiteral("aa");
    EXPECT_TRUE((callSlot<bool, const QString&>(failure, 8, code)));
    EXPECT_EQ(
        (callSlot<KResult, const QString&, KJSVariant&>(failure, 9, absent, keys[0])), KR_NOT_AVAILABLE);
    EXPECT_TRUE(keys[0].isEmpty());
    callSlot<void, const QString&, bool>(failure, 13, own, true);
    EXPECT_EQ((callSlot<std::int32_t, const QString&, std::int32_t>(failure, 19, code, 7)), 1);
    callSlot<void, const QString&, std::int32_t>(failure, 14, own, 5);
    EXPECT_EQ((callSlot<std::int64_t, const QString&, std::int64_t>(failure, 20, own, 7)), 5);
    callSlot<void, const QString&, std::int64_t>(failure, 15, own, std::int64_t { 1 } << 60);
    EXPECT_EQ(failure->GetInt32(own, 7), 7) << "what does not fit reads as the fallback";
    EXPECT_EQ(failure->GetInt64(own, 7), std::int64_t { 1 } << 60);
    callSlot<void, const QString&, double>(failure, 16, own, 0.5);
    EXPECT_EQ((callSlot<double, const QString&, double>(failure, 21, own, 7)), 0.5);
    EXPECT_EQ(failure->GetString(own, {}), QStringLiteral("0.5"));
    EXPECT_TRUE(failure->Remove(own));
    EXPECT_FALSE(failure->Remove(own));
    EXPECT_EQ(failure->GetInt32(code, 0), 1) << "removing a key leaves the others' values in place";
    EXPECT_TRUE(failure->Remove(code));
    EXPECT_EQ(failure->GetString(QStringLiteral("msg"), {}), QStringLiteral("missing required parameters."));
    EXPECT_FALSE(failure->GetBoolean(QStringLiteral("success"), true));
    callSlot<void>(failure, 6);
    EXPECT_EQ(failure->Count(), 0);
    log->Release();
}

TEST_F(Abi, EventMembersGoToTheHubOfTheClass)
{
    struct Row {
        const char16_t* member;
        std::vector<KJSVariant> arguments;
        const char* hub;
    };
    MVARIANT reference {};
    KJSVariant target = KJSVariant::fromString(u"behind");
    MVARIANT behind = target.raw();
    reference.vt = MV_BYREF_VARIANT;
    reference.pvarVal = &behind;
    MVARIANT narrow {};
    narrow.vt = MV_LPSTR;
    narrow.pszVal = "narrow";
    const KJSVariant name = KJSVariant::fromString(u"e");
    const KJSVariant yes = KJSVariant::fromBool(true), no = KJSVariant::fromBool(false);
    const Row rows[] = {
        { u"addEventListener", { name, KJSVariant::fromInt32(1) }, "add e" },
        { u"removeEventListener", { name }, "remove e 0" },
        { u"removeEventListener", { name, KJSVariant::fromInt32(1) }, "remove e 3" },
        { u"dispatchEvent", { name }, "dispatch e 9 0" },
        { u"dispatchEvent", { name, no }, "dispatch e -1 0" },
        { u"dispatchEvent", { name, yes, name, no }, "dispatch e 9 2" },
        { u"dispatchEvent", { name, KJSVariant::fromInt32(0), name }, "dispatch e -1 1" },
        { u"dispatchEvent", { name, KJSVariant(), name }, "dispatch e 9 1" },
        { u"dispatchEvent", { KJSVariant::fromInt32(12) }, "dispatch 12 9 0" },
        { u"dispatchEvent", { KJSVariant(reference, nullptr) }, "dispatch behind 9 0" },
        { u"dispatchEvent", { KJSVariant(narrow, nullptr) }, "dispatch narrow 9 0" },
        { u"dispatchEvent", {}, "dispatch  9 0" },
    };
    IJSExtentionObject* account = object("SyncFolder");
    int hubs = 0;
    for (const Row& row : rows) {
        EXPECT_EQ(call(account, row.member, row.arguments), KR_OK) << row.hub;
        hubs += static_cast<int>(core.takeOperations().filter(QStringLiteral("hub ")).size());
        EXPECT_EQ(core.hub.operations.takeLast(), QLatin1String(row.hub));
        EXPECT_TRUE(result.isEmpty());
    }
    EXPECT_EQ(hubs, 1) << "the hub is asked for once";
    core.hub.status = 0x80000099u;
    EXPECT_EQ(call(account, u"addEventListener", { name, name }), 0x80000099u);
    EXPECT_EQ(call(account, u"dispatchEvent", { name }), KR_OK) << "dispatching always answers 0";
    core.hub.status = KR_OK;
    EXPECT_EQ(call(account, u"getAllEventInfo"), KR_OK);
    EXPECT_EQ(result.raw().lVal, 27) << "the hub's report is the answer, without an envelope";
    account->Release();
}

TEST_F(Abi, AccountNeedsAnApplication)
{
    IJSExtentionObject* account = object("Account");
    for (const char16_t* member : { u"isLoggedIn", u"login", u"addLoginListener" }) {
        exception = {};
        EXPECT_EQ(call(account, member), KR_REJECTED);
        const auto* failure = static_cast<IJSONValue*>(exception.raw().punkVal);
        EXPECT_EQ(failure->GetString(QStringLiteral("msg"), {}), QStringLiteral("empty handle."));
        EXPECT_EQ(failure->GetInt32(QStringLiteral("code"), 0), 3);
    }
    account->Release();
}

TEST_F(Abi, UploadTasksHaveEventsOfTheirOwn)
{
    IJSExtentionObject* cloud = object("CloudDoc");
    publish(cloud)->Release();
    const QString name = QStringLiteral("NovaExtension.CloudDoc.UploadFileTask");
    IJSExtentionObject* first = core.Create(name, Page, nullptr);
    IJSExtentionObject* second = core.Create(name, Page, nullptr);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(call(first, u"dispatchEvent", { KJSVariant::fromString(u"e") }), KR_OK);
    EXPECT_EQ(call(second, u"dispatchEvent", { KJSVariant::fromString(u"f") }), KR_OK);
    ASSERT_EQ(core.instanceHubs.size(), 2u);
    EXPECT_EQ(core.instanceHubs[0]->operations, QStringList(QStringLiteral("dispatch e 9 0")));
    first->Release();
    ASSERT_EQ(core.instanceHubs.size(), 1u) << "an object's hub ends with it";
    EXPECT_EQ(core.instanceHubs[0]->operations, QStringList(QStringLiteral("dispatch f 9 0")));
    second->Release();
    EXPECT_TRUE(core.instanceHubs.empty());
    cloud->Release();
}

TEST_F(Abi, ProfileReportsTheBrowserAndNoNegativeDuration)
{
    struct Row {
        const char16_t* member;
        QMap<QString, std::int64_t> numbers;
    };
    const QMap<QString, std::int64_t> profile { { QStringLiteral("c_l"), 0 }, { QStringLiteral("c_cb"), 30 },
        { QStringLiteral("c_l_ts"), 500 }, { QStringLiteral("c_cb_ts"), 100 },
        { QStringLiteral("c_lf_ts"), 400 }, { QStringLiteral("c_cbf_ts"), 130 } };
    QMap<QString, std::int64_t> trace = profile;
    trace[QStringLiteral("pid")] = 11;
    trace[QStringLiteral("c_l_rd")] = 70;
    trace[QStringLiteral("c_l_rd_ts")] = 570;
    trace[QStringLiteral("c_cb_ld")] = 25;
    trace[QStringLiteral("c_cb_ld_ts")] = 1000;
    IJSExtentionObject* of = object("Profile");
    for (const Row& row : { Row { u"getProfileInfo", profile }, Row { u"getBrowserTraceInfo", trace } }) {
        ASSERT_EQ(call(of, row.member), KR_OK);
        auto* envelope = static_cast<IJSONValue*>(result.raw().punkVal);
        auto* data = static_cast<IJSONValue*>(envelope->Find(QStringLiteral("data"))->raw().punkVal);
        for (auto number = row.numbers.begin(); number != row.numbers.end(); ++number) {
            const KJSVariant* value = data->Find(number.key());
            ASSERT_TRUE(value) << number.key().toStdString();
            EXPECT_EQ(value->type(), MV_INT64) << number.key().toStdString();
            EXPECT_EQ(value->raw().llVal, number.value()) << number.key().toStdString();
        }
    }
    of->Release();
}

TEST_F(Abi, RejectedPromisesComeFromTheService)
{
    EXPECT_EQ(KNovaExtensionUtils::setPromiseReject(Page, result, QStringLiteral("why")), KR_REJECTED);
    EXPECT_EQ(core.operations, QStringList({ QStringLiteral("settled 1 9 why") }));
    EXPECT_EQ(result.raw().lVal, 5);
}

} // namespace
