// What the library promises to a suite, checked by direct calls and by position in the virtual tables.
#include "tests/support/exports.h"
#include "tests/support/fakecore.h"

// The library looks its JS core up here: a program's own definition comes before the suite's.
namespace vexlite {
IVEXJSCore* GetVEXJSCore()
{
    return support::FakeCore::current;
}
} // namespace vexlite

namespace {

constexpr JSContextEnv Page { 4, 9 };

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

/// Calls operation `slot` of an object's virtual table, counted from 1.
template <typename Result, typename... Arguments>
Result callSlot(void* object, int slot, Arguments... arguments)
{
    using Operation = Result (*)(void*, Arguments...);
    void** table = *static_cast<void***>(object);
    return reinterpret_cast<Operation>(table[slot - 1])(object, arguments...);
}

KJSVariant text(const char16_t* given)
{
    return KJSVariant::fromString(given);
}

class Abi : public testing::Test {
protected:
    /// The object of a short name, with the reference that its factory handed over.
    IJSExtentionObject* object(const char* name)
    {
        EXPECT_EQ(filledMap().value(QLatin1String(name))(1, 2), KR_OK);
        core.takeOperations();
        return core.bound.back();
    }

    support::FakeMemberList* publish(IJSExtentionObject* of)
    {
        IJSMemberList* list = nullptr;
        EXPECT_EQ(of->GetMemberTable(Page, &list), KR_OK);
        return static_cast<support::FakeMemberList*>(list);
    }

    KResult call(IJSExtentionObject* of, const char16_t* name, std::vector<KJSVariant> values = {})
    {
        support::FakeMemberList* list = publish(of);
        std::int32_t id = 0;
        while (std::u16string_view(list->Name(id)) != name)
            ++id;
        list->Release();
        core.takeOperations();
        JSApiArguments arguments(values.data(), values.size());
        return of->InvokeMethod(Page, id, arguments, result, 321, exception);
    }
    std::string failure() const
    {
        const auto* failed = static_cast<const IJSONValue*>(exception.raw().punkVal);
        return std::to_string(failed->GetInt32(QStringLiteral("code"), 0)) + ' '
            + failed->GetString(QStringLiteral("msg"), {}).toStdString();
    }

    support::FakeCore core;
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
    const ExtensionFactoryMap factories = filledMap();
    for (const std::string_view name : Names) {
        const std::uint32_t expected = name == "Webview"  ? 1
            : name == "AiDocsChat" || name == "KContract" ? 2
                                                          : 3;
        const bool shared = expected == 3;
        core.bound.clear();
        for (int twice = 0; twice < 2; ++twice)
            ASSERT_EQ(factories.value(QLatin1String(name.data()))(-5, 7), KR_OK);
        EXPECT_EQ(core.takeOperations(), "bind -5 7 0, bind -5 7 0");
        IJSExtentionObject* first = core.bound.at(0);
        IJSExtentionObject* second = core.bound.at(1);
        std::uint32_t mode = 99;
        first->GetInstanceMode(&mode);
        EXPECT_EQ(mode, expected) << name;
        EXPECT_EQ(first == second, shared) << name;
        EXPECT_EQ(first->AddRef(), shared ? 4u : 2u) << name;
        first->Release();
        EXPECT_EQ(first->Release(), shared ? 2u : 0u) << name;
        EXPECT_EQ(second->Release(), shared ? 1u : 0u) << name;
    }
}

TEST_F(Abi, WithoutAJsCoreEverythingIsNotAvailable)
{
    IJSExtentionObject* crypto = object("Crypto");
    support::FakeCore::current = nullptr;
    for (const ExtensionFactory factory : filledMap())
        EXPECT_EQ(factory(1, 2), KR_NOT_AVAILABLE);
    IJSMemberList* list = nullptr;
    JSApiArguments none;
    EXPECT_EQ(crypto->GetMemberTable(Page, &list), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->InvokeMethod(Page, 0, none, result, 0, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->InvokePropertyGet(Page, 0, 0, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->InvokePropertyPut(Page, 0, result, exception), KR_NOT_AVAILABLE);
    EXPECT_EQ(crypto->GetTypeId(), KR_NOT_AVAILABLE);
    KJSVariant untouched = KJSVariant::fromInt32(1);
    EXPECT_EQ(KNovaExtensionUtils::setPromiseReject(Page, untouched, QStringLiteral("no")), KR_REJECTED);
    EXPECT_EQ(untouched.type(), MV_INT32);
    support::FakeCore::current = &core;
    const std::int64_t id = crypto->GetTypeId();
    EXPECT_GE(id, 100);
    EXPECT_EQ(crypto->GetTypeId(), id) << "asked for once";
    crypto->Release();
}

TEST_F(Abi, ObjectSlotsStandInTheirOrder)
{
    IJSExtentionObject* utils = object("Utils");
    void* found = nullptr;
    for (const KIID& id : { IID_IJSExtentionObject, IID_IUnknown }) {
        EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, id, &found)), KR_OK);
        EXPECT_EQ(found, utils);
    }
    EXPECT_EQ((callSlot<KResult, const KIID&, void**>(utils, 1, IID_IJSONValue, &found)), KR_NO_INTERFACE);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(callSlot<std::uint32_t>(utils, 2), 5u);
    EXPECT_EQ(callSlot<std::uint32_t>(utils, 3), 4u);
    EXPECT_EQ(callSlot<std::int64_t>(utils, 6), utils->GetTypeId());
    IJSMemberList* list = nullptr;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, IJSMemberList**>(utils, 10, Page, &list)), KR_OK);
    list->Release();
    core.takeOperations();
    KJSVariant value;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, std::int32_t, std::int64_t, KJSVariant&, KJSVariant&>(
                  utils, 7, Page, 0, 8, value, exception)),
        KR_NOT_AVAILABLE);
    EXPECT_EQ(core.takeOperations(), "find 0 1, completed 9 0 8");
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, std::int32_t, KJSVariant&, KJSVariant&>(
                  utils, 8, Page, 0, value, exception)),
        KR_NOT_AVAILABLE);
    EXPECT_EQ(core.takeOperations(), "find 0 2");
    JSApiArguments none;
    EXPECT_EQ((callSlot<KResult, const JSContextEnv&, std::int32_t, JSApiArguments&, KJSVariant&,
                  std::int64_t, KJSVariant&>(utils, 9, Page, 0, none, value, 55, exception)),
        KR_REJECTED);
    EXPECT_EQ(core.takeOperations(), "find 0 0, completed 9 0 55");
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
    for (int references = 3; references > 0; --references)
        utils->Release();
}

TEST_F(Abi, ATableIsFilledOnceAndPublishedEachTime)
{
    IJSExtentionObject* first = object("KContract");
    IJSExtentionObject* second = object("KContract");
    publish(first)->Release();
    publish(second)->Release();
    EXPECT_EQ(core.takeOperations(), "assign 2, publish 2, publish 2");
    core.tracing = true;
    for (const bool filtering : { false, true, false }) {
        core.filtering = filtering;
        publish(first)->Release();
        EXPECT_EQ(core.takeOperations(),
            filtering ? "filter NovaExtension.KContract, publish 1"
                      : "filter NovaExtension.KContract, publish 2");
    }
    first->Release();
    second->Release();
}

TEST_F(Abi, ACallIsNoticedMadeAndCompleted)
{
    IJSExtentionObject* log = object("Log");
    core.tracing = true;
    EXPECT_EQ(call(log, u"logInfo"), KR_REJECTED);
    EXPECT_EQ(core.takeOperations(), "find 0 0, notice NovaExtension.Log.logInfo, completed 9 0 321");
    EXPECT_TRUE(result.isEmpty()) << "a failure leaves the result unset";
    log->Release();
}

TEST_F(Abi, AnEnvelopeIsAnOrderedObject)
{
    IJSExtentionObject* log = object("Log");
    ASSERT_EQ(call(log, u"logInfo"), KR_REJECTED);
    auto* failed = static_cast<IJSONValue*>(exception.raw().punkVal);
    void* found = nullptr;
    for (const KIID& id : { IID_IJSONValue, IID_IJSONValueBase, IID_IUnknown }) {
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
    EXPECT_EQ(failure(), "1 missing required parameters.")
        << "removing a key leaves the others' values in place";
    EXPECT_EQ(failed->GetDouble(own, 7), 0.5);
    callSlot<void>(failed, 6);
    EXPECT_EQ(failed->Count(), 0);
    log->Release();
}

TEST_F(Abi, EventMembersGoToTheHubOfTheClass)
{
    MVARIANT reference {};
    const KJSVariant target = text(u"behind");
    MVARIANT behind = target.raw();
    reference.vt = MV_BYREF_VARIANT;
    reference.pvarVal = &behind;
    MVARIANT narrow {};
    narrow.vt = MV_LPSTR;
    narrow.pszVal = "narrow";
    const KJSVariant e = text(u"e"), one = KJSVariant::fromInt32(1);
    const KJSVariant yes = KJSVariant::fromBool(true), no = KJSVariant::fromBool(false);
    const struct {
        const char16_t* member;
        std::vector<KJSVariant> arguments;
        const char* done;
    } rows[] = {
        { u"addEventListener", { e, one }, "add e" },
        { u"removeEventListener", { e }, "remove e 0" },
        { u"removeEventListener", { e, one }, "remove e 3" },
        { u"dispatchEvent", { e }, "dispatch e 9 0" },
        { u"dispatchEvent", { e, no }, "dispatch e -1 0" },
        { u"dispatchEvent", { e, yes, e, no }, "dispatch e 9 2" },
        { u"dispatchEvent", { e, KJSVariant::fromInt32(0), e }, "dispatch e -1 1" },
        { u"dispatchEvent", { e, KJSVariant(), e }, "dispatch e 9 1" },
        { u"dispatchEvent", { one }, "dispatch 1 9 0" },
        { u"dispatchEvent", { KJSVariant(reference, nullptr) }, "dispatch behind 9 0" },
        { u"dispatchEvent", { KJSVariant(narrow, nullptr) }, "dispatch narrow 9 0" },
        { u"dispatchEvent", {}, "dispatch  9 0" },
    };
    IJSExtentionObject* folder = object("SyncFolder");
    std::string hub = "hub, "; // asked for once
    for (const auto& row : rows) {
        EXPECT_EQ(call(folder, row.member, row.arguments), KR_OK) << row.done;
        const std::string operations = core.takeOperations();
        EXPECT_EQ(operations.substr(operations.find(", ") + 2),
            std::exchange(hub, "") + row.done + ", completed 9 0 321");
        EXPECT_TRUE(result.isEmpty());
    }
    core.hubStatus = 0x80000099u;
    EXPECT_EQ(call(folder, u"addEventListener", { e, e }), 0x80000099u);
    EXPECT_EQ(call(folder, u"dispatchEvent", { e }), KR_OK) << "dispatching always answers 0";
    core.hubStatus = KR_OK;
    EXPECT_EQ(call(folder, u"getAllEventInfo"), KR_OK);
    EXPECT_EQ(result.raw().lVal, 27) << "the hub's report is the answer, without an envelope";
    folder->Release();
}

TEST_F(Abi, AccountNeedsAnApplication)
{
    IJSExtentionObject* account = object("Account");
    for (const char16_t* member : { u"isLoggedIn", u"login", u"addLoginListener" }) {
        EXPECT_EQ(call(account, member), KR_REJECTED);
        EXPECT_EQ(failure(), "3 empty handle.");
    }
    account->Release();
}

} // namespace
