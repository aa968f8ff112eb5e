#include "host/vexlite/counted.h"
#include "tests/vexlite/fakes.h"

#include <cstring>

using namespace vexlite;
using namespace vexlite::test;

namespace {

std::function<KResult(KJSVariant& result, KJSVariant& exception)> handled;

KResult method(
    IJSExtentionObject*, const JSContextEnv&, JSApiArguments&, KJSVariant& result, KJSVariant& exception)
{
    const auto body = handled; // it may replace itself
    return body ? body(result, exception) : KR_OK;
}

KResult property(IJSExtentionObject*, const JSContextEnv&, KJSVariant& value, KJSVariant&)
{
    value = KJSVariant::fromInt32(4);
    return KR_OK;
}

/// Overwrites its strings after use, as a module does that is unloaded.
void addMember(JSMemberTable& table, const char* name, int kind, std::uint32_t mask, int count)
{
    std::u16string text(name, name + std::strlen(name));
    std::u16string label = u"eventName";
    const JSParameter named { MV_STRING, label.c_str(), 0 };
    const JSParameter unnamed { 0x8004, nullptr, 0 };
    const auto invoke =
        kind == 1 ? reinterpret_cast<JSMemberInvoke>(&property) : reinterpret_cast<JSMemberInvoke>(&method);
    GetVEXJSCore()->Registry()->AddMember(table, text.c_str(), kind, mask, 0x8004, invoke, count, named,
        unnamed, JSParameter { 13, nullptr, 0 });
    text.assign(text.size(), u'#');
    label.assign(label.size(), u'#');
}

/// An extension object that does with the core what a module's objects do.
class FakeObject final : public Counted<IJSExtentionObject, IID_IJSExtentionObject>, public IJSCreatable {
public:
    FakeObject() { ++alive; }
    ~FakeObject() override { --alive; }

    std::int64_t GetTypeId() override { return 0; }
    KResult InvokePropertyGet(const JSContextEnv& context, std::int32_t id, std::int64_t extra,
        KJSVariant& value, KJSVariant& exception) override
    {
        return invoke<JSPropertyInvoke>(JSAccess::PropertyGet, id, extra, value, context, value, exception);
    }
    KResult InvokePropertyPut(const JSContextEnv&, std::int32_t, KJSVariant&, KJSVariant&) override
    {
        return KR_OK;
    }
    KResult InvokeMethod(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, std::int64_t extra, KJSVariant& exception) override
    {
        return invoke<JSMethodInvoke>(
            JSAccess::Method, id, extra, result, context, arguments, result, exception);
    }
    KResult GetMemberTable(const JSContextEnv& context, IJSMemberList** out) override
    {
        IVEXJSCore* core = GetVEXJSCore();
        if (m_table.empty()) {
            addMember(m_table, "open", 0, 0x40, 1);
            addMember(m_table, "close", 0, 0x1, 0);
            addMember(m_table, "Part", 1, 0x41, 0);
        }
        JSMemberTable shown;
        IJSTraceHook* hook = core->TraceHook();
        const bool filtered = hook && hook->FilterTable(m_name, context, m_table, shown);
        return core->Registry()->PublishTable(filtered ? shown : m_table, out);
    }
    void* GetHostPointer() override { return m_hostPointer; }
    void Reserved() override { }
    void SetHostPointer(void* value) override { m_hostPointer = value; }
    void GetInstanceMode(std::uint32_t*) override { }
    void SetInstanceMode(std::uint32_t) override { }
    void Initialise(IJSONValue*) override { ++initialised; }

    static inline int alive = 0;
    int initialised = 0;

private:
    template <typename Invoke, typename... Arguments>
    KResult invoke(JSAccess access, std::int32_t id, std::int64_t extra, KJSVariant& value,
        const JSContextEnv& context, Arguments&... arguments)
    {
        IVEXJSCore* core = GetVEXJSCore();
        const JSMemberEntry* entry = core->Registry()->FindMember(m_table, id, access);
        if (IJSTraceHook* hook = core->TraceHook())
            hook->CallNotice(m_name, context, entry);
        const KResult status = reinterpret_cast<Invoke>(entry->invoke)(this, context, arguments...);
        core->Registry()->CallCompleted(context, value, extra);
        return status;
    }

    const QString m_name = QStringLiteral("NovaExtension.Fake");
    JSMemberTable m_table;
    void* m_hostPointer = nullptr;
};

KResult bindNew(std::int64_t context, std::int64_t target)
{
    IVEXJSCore* core = GetVEXJSCore();
    return core ? core->Registry()->Bind(new FakeObject, context, target, 0) : KR_NOT_AVAILABLE;
}

JSContextEnv closing;

const ExtensionFactoryMap Factories { { QStringLiteral("Fake"), &bindNew },
    { QStringLiteral("Elsewhere"),
        [](std::int64_t context, std::int64_t target) {
            EXPECT_EQ(bindNew(context, target + 1), KR_NOT_AVAILABLE);
            EXPECT_EQ(bindNew(context + 1, target), KR_NOT_AVAILABLE);
            return KR_OK;
        } },
    { QStringLiteral("Twice"),
        [](std::int64_t context, std::int64_t target) {
            EXPECT_EQ(bindNew(context, target), KR_OK);
            EXPECT_EQ(bindNew(context, target), KR_NOT_AVAILABLE);
            return KR_OK;
        } },
    { QStringLiteral("Fails"),
        [](std::int64_t context, std::int64_t target) { return bindNew(context, target), KR_NO_MEMORY; } },
    { QStringLiteral("Closing"), [](std::int64_t context, std::int64_t target) {
         Core::instance()->closePage(closing);
         EXPECT_EQ(bindNew(context, target), KR_NOT_AVAILABLE);
         return KR_OK;
     } } };

class Calls : public CoreTest {
protected:
    Calls()
    {
        core.setFactories(Factories);
        closing = first;
    }
    ~Calls() override { handled = nullptr; }

    KResult call(
        IJSExtentionObject* object, const JSContextEnv& context, int id, JSAccess access = JSAccess::Method)
    {
        JSApiArguments none;
        result = exception = {};
        return core.call(object, context, id, access, none, result, exception);
    }

    KJSVariant result;
    KJSVariant exception;
};

std::string names(IJSMemberList& list)
{
    QStringList all;
    for (int index = 0; index < list.Count(); ++index)
        all.append(QString::fromUtf16(list.Name(index)) + QString::number(list.Id(index)));
    return all.join(u' ').toStdString();
}

TEST_F(Calls, BindingGivesAnObjectOrACode)
{
    const struct {
        const char* object;
        KResult status;
    } rows[] = {
        { "Fake", KR_OK },
        { "fake", KR_NOT_AVAILABLE },
        { "Elsewhere", KR_NOT_AVAILABLE },
        { "Twice", KR_OK },
        { "Fails", KR_NO_MEMORY },
        { "Closing", KR_NOT_AVAILABLE }, // and the page is closed from there on
        { "Fake", KR_NOT_AVAILABLE },
    };
    for (const auto& row : rows) {
        {
            const BoundObject bound = core.bindObject(first, QLatin1String(row.object));
            EXPECT_EQ(bound.status, row.status) << row.object;
            EXPECT_EQ(bound.object && bound.members, row.status == KR_OK) << row.object;
            EXPECT_EQ(FakeObject::alive, row.status == KR_OK ? 1 : 0) << row.object;
        }
        EXPECT_EQ(FakeObject::alive, 0) << row.object;
    }
}

TEST_F(Calls, BindOutsideAVisitIsRefused)
{
    EXPECT_EQ(bindNew(first.contextId, 1), KR_NOT_AVAILABLE);
    EXPECT_EQ(FakeObject::alive, 0);
}

TEST_F(Calls, TablesTakeMembersWithoutFault)
{
    const struct {
        const char* member;
        int kind;
        int count;
        const char* members; // with their ids, afterwards
    } rows[] = {
        { "two", 0, 3, "one0 two1 last2" },
        { "two", 1, 0, "one0 two1 last2" },
        { "one", 1, 0, "one0 last1" },
        { "", 0, 0, "one0 last1" },
        { "two", 2, 0, "one0 last1" }, // no such kind
        { "two", 0, 4, "one0 last1" },
        { "two", 0, -1, "one0 last1" },
    };
    for (const auto& row : rows) {
        JSMemberTable table;
        addMember(table, "one", 0, 0, 2);
        addMember(table, row.member, row.kind, 0, row.count);
        addMember(table, "last", 0, 0, 0);
        IJSMemberList* published = nullptr;
        GetVEXJSCore()->Registry()->PublishTable(table, &published);
        EXPECT_EQ(names(*published), row.members) << row.member << row.kind << row.count;
        published->Release();
    }
}

TEST_F(Calls, DenyMaskHidesMembersThatShareABit)
{
    const std::pair<std::uint32_t, const char*> rows[] = { { 0x40, "close1" }, { 0x81, "open0" },
        { 0x100, "open0 close1 Part2" }, { 0xffffffff, "" }, { 0, "open0 close1 Part2" } };
    for (const auto& [mask, members] : rows) {
        core.setDenyMask(mask);
        EXPECT_EQ(GetVEXJSCore()->TraceHook() != nullptr, mask != 0);
        EXPECT_EQ(names(*core.bindObject(first, QStringLiteral("Fake")).members.get()), members) << mask;
    }
}

TEST_F(Calls, FailureAlwaysHasAnException)
{
    const BoundObject bound = core.bindObject(first, QStringLiteral("Fake"));
    EXPECT_EQ(call(bound.object.get(), first, 2, JSAccess::PropertyGet), KR_OK);
    EXPECT_EQ(result.raw().lVal, 4);
    EXPECT_EQ(call(bound.object.get(), first, 2, JSAccess::PropertyPut), KR_REJECTED);
    EXPECT_GT(support::failure(exception).size(), 2u);
    handled = [](KJSVariant&, KJSVariant&) { return KR_NOT_AVAILABLE; };
    EXPECT_EQ(call(bound.object.get(), first, 0), KR_NOT_AVAILABLE);
    EXPECT_NE(support::failure(exception).find("0x80000008"), std::string::npos);
    handled = [](KJSVariant&, KJSVariant& thrown) {
        return thrown = makeFailure(1, QStringLiteral("mine")), KR_OK;
    };
    EXPECT_EQ(call(bound.object.get(), first, 0), KR_REJECTED);
    EXPECT_EQ(support::failure(exception), "1 mine");
}

/// Notes what it is told, and stops when the outer call has ended.
struct Notes final : Observer {
    explicit Notes(Core& observed)
        : core(observed)
    {
    }
    void callBegan(const CallFacts& call) override { seen << QStringLiteral("%1>").arg(call.member); }
    void callEnded(const CallFacts& call, const CallOutcome& outcome) override
    {
        EXPECT_GE(outcome.end, call.start);
        seen << call.object + QLatin1Char('.') + call.member + QStringLiteral(" in %1 ").arg(call.within)
                + failureOf(outcome.exception).msg;
        if (call.member == QStringLiteral("open"))
            core.removeObserver(this);
    }
    Core& core;
    QStringList seen;
};

TEST_F(Calls, ObserverSeesNestedCallsByTheirOwnNames)
{
    Notes notes(core);
    core.addObserver(&notes);
    const BoundObject bound = core.bindObject(first, QStringLiteral("Fake"));
    const BoundObject other = core.bindObject(second, QStringLiteral("Fake"));
    handled = [&](KJSVariant&, KJSVariant& thrown) {
        handled = nullptr;
        KJSVariant value, none;
        JSApiArguments arguments;
        core.call(other.object.get(), second, 2, JSAccess::PropertyGet, arguments, value, none);
        // What native code calls by itself is no call of script.
        bound.object->InvokeMethod(first, 1, arguments, value, 0, none);
        thrown = makeFailure(1, QStringLiteral("no"));
        return KR_REJECTED;
    };
    call(bound.object.get(), first, 0);
    call(bound.object.get(), first, 1); // nobody observes any more
    EXPECT_EQ(notes.seen.join(QStringLiteral("; ")).toStdString(),
        "open>; Part>; NovaExtension.Fake.Part in 1 ; NovaExtension.Fake.open in 0 no");
    EXPECT_EQ(GetVEXJSCore()->TraceHook(), nullptr);
}

TEST_F(Calls, TokenNamesOneObjectForEver)
{
    IJSRegistry* registry = GetVEXJSCore()->Registry();
    auto object = Ref<FakeObject>::adopt(new FakeObject);
    const std::int64_t token = registry->SubObjectToken(object.get());
    EXPECT_NE(token, 0);
    EXPECT_EQ(registry->SubObjectToken(object.get()), token);
    object = {};
    object = Ref<FakeObject>::adopt(new FakeObject); // very likely at the same address
    EXPECT_NE(registry->SubObjectToken(object.get()), token);
}

TEST_F(Calls, ObjectFactoryKnowsAnnouncedClasses)
{
    IJSObjectFactory* objects = GetVEXJSCore()->Objects();
    static FakeObject* made = nullptr;
    const IJSObjectFactory::Creator creator = [](IJSCreatable** creatable) -> IJSExtentionObject* {
        made = new FakeObject;
        *creatable = made;
        return made;
    };
    objects->RegisterClass(QStringLiteral("b"), creator);
    objects->RegisterClass(QStringLiteral("a"), creator);
    objects->RegisterClass(QStringLiteral("b"), creator);
    EXPECT_EQ(core.creatableClasses(), QStringList({ QStringLiteral("b"), QStringLiteral("a") }));
    auto object = Ref<IJSExtentionObject>::adopt(objects->Create(QStringLiteral("a"), first, nullptr));
    ASSERT_TRUE(object);
    EXPECT_EQ(made->initialised, 1);
    objects->UnregisterClass(QStringLiteral("b"));
    EXPECT_EQ(objects->Create(QStringLiteral("b"), first, nullptr), nullptr);
}

TEST_F(Calls, BrowserIsThereWhileItsPageIs)
{
    core.updateBrowser(first, { {}, {}, QStringLiteral("b1") });
    const IVEXBrowser* browser = GetVEXJSCore()->Browser(first.browserId);
    ASSERT_TRUE(browser);
    EXPECT_EQ(browser->BrowserId(), QStringLiteral("b1"));
    EXPECT_EQ(GetVEXJSCore()->Browser(second.browserId)->BrowserId(), QString());
    core.closePage(first);
    EXPECT_EQ(GetVEXJSCore()->Browser(first.browserId), nullptr);
}

TEST(Services, AreNullWhenSwitchedOff)
{
    bool CoreServices::*const switches[] = { &CoreServices::promiseService, &CoreServices::answerChannel,
        &CoreServices::eventHubs, &CoreServices::objectFactory, &CoreServices::traceHook,
        &CoreServices::browserGroups, &CoreServices::browsers, &CoreServices::jsCore };
    const char* const found[] = { "-++++++", "+-+++++", "++-++++", "+++-+++", "++++-++", "+++++-+", "+++++--",
        "" };
    for (std::size_t off = 0; off < std::size(switches); ++off) {
        CoreServices services;
        services.*switches[off] = false;
        support::NullPage page;
        Core& host = Core::start(services);
        host.setDenyMask(1);
        host.setFactories({ { QStringLiteral("Fake"), &bindNew } });
        const JSContextEnv context = host.openPage(&page, {});
        std::string seen;
        if (IVEXJSCore* core = GetVEXJSCore()) {
            const IVEXBrowser* browser = core->Browser(context.browserId);
            for (const bool there : { core->PromiseService() != nullptr, core->AnswerChannel() != nullptr,
                     core->EventHubs() != nullptr, core->Objects() != nullptr, core->TraceHook() != nullptr,
                     browser && browser->Group(), browser != nullptr })
                seen += there ? '+' : '-';
        }
        EXPECT_EQ(seen, found[off]);
        EXPECT_EQ(host.bindObject(context, QStringLiteral("Fake")).status,
            services.jsCore ? KR_OK : KR_NOT_AVAILABLE);
        Core::stop();
        EXPECT_EQ(Core::instance(), nullptr);
    }
}

} // namespace
