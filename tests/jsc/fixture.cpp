#include "tests/jsc/fixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <cmath>

using namespace vexlite;

namespace engine::test {

namespace {

int s_liveProbes = 0;
constexpr KIID NoId {};

class MemberTable final : public Counted<IJSMemberList, NoId> {
public:
    explicit MemberTable(const std::vector<ProbeMember>& members)
        : m_members(members)
    {
    }
    std::int32_t Count() const override { return static_cast<std::int32_t>(m_members.size()); }
    std::int32_t Id(std::int32_t index) const override { return index; }
    const char16_t* Name(std::int32_t index) const override { return at(index).name; }
    std::int32_t Kind(std::int32_t index) const override { return at(index).kind; }
    std::uint32_t Mask(std::int32_t) const override { return 0; }
    std::int32_t ResultType(std::int32_t) const override { return 0; }
    std::int32_t ParameterCount(std::int32_t) const override { return 0; }
    JSParameter Parameter(std::int32_t, std::int32_t) const override { return {}; }
    JSMemberInvoke Invoke(std::int32_t) const override { return nullptr; }

private:
    const ProbeMember& at(std::int32_t index) const { return m_members[static_cast<std::size_t>(index)]; }
    std::vector<ProbeMember> m_members;
};

class Probe final : public Counted<IJSExtentionObject, IID_IJSExtentionObject> {
public:
    Probe(std::int64_t typeId, std::vector<ProbeMember> members)
        : m_typeId(typeId)
        , m_members(std::move(members))
    {
        ++s_liveProbes;
    }
    ~Probe() override { --s_liveProbes; }

    std::int64_t GetTypeId() override { return m_typeId; }
    KResult InvokePropertyGet(const JSContextEnv& context, std::int32_t id, std::int64_t, KJSVariant& value,
        KJSVariant& exception) override
    {
        JSApiArguments none;
        return InvokeMethod(context, id, none, value, 0, exception);
    }
    KResult InvokePropertyPut(const JSContextEnv&, std::int32_t, KJSVariant&, KJSVariant&) override
    {
        return KR_REJECTED;
    }
    KResult InvokeMethod(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, std::int64_t, KJSVariant& exception) override
    {
        ProbeCall call { context, arguments, result, exception };
        return m_members[static_cast<std::size_t>(id)].body(call);
    }
    KResult GetMemberTable(const JSContextEnv&, IJSMemberList** out) override
    {
        *out = new MemberTable(m_members);
        return KR_OK;
    }
    void* GetHostPointer() override { return nullptr; }
    void Reserved() override { }
    void SetHostPointer(void*) override { }
    void GetInstanceMode(std::uint32_t*) override { }
    void SetInstanceMode(std::uint32_t) override { }

private:
    std::int64_t m_typeId;
    std::vector<ProbeMember> m_members;
};

/// What a member hands out for another object.
class SubObject final : public Counted<IJSSubObject, IID_IJSSubObject> {
public:
    explicit SubObject(Ref<IJSExtentionObject> object)
        : m_object(std::move(object))
    {
    }
    IJSExtentionObject* Object() const override { return m_object.get(); }
    std::int64_t Token() const override { return 1; }

private:
    Ref<IJSExtentionObject> m_object;
};

/// Calls a function of script when it ends.
class CallsAtItsEnd final : public Counted<IUnknown, NoId> {
public:
    explicit CallsAtItsEnd(const KJSVariant& function)
        : m_function(function)
    {
    }
    ~CallsAtItsEnd() override { functionOf(m_function)->Call({}, nullptr); }

private:
    KJSVariant m_function;
};

KJSVariant text(const char* ascii)
{
    return makeText(QString::fromLatin1(ascii));
}

QString stringOf(const KJSVariant& value)
{
    return QString::fromUtf16(value.text().data(), static_cast<int>(value.text().size()));
}

KJSVariant envelope(const KJSVariant& data)
{
    Ref<IJSONValue> made = makeScriptObject();
    made->SetValue(QStringLiteral("data"), data);
    made->SetBoolean(QStringLiteral("success"), true);
    return KJSVariant::fromUnknown(made.release());
}

Ref<IJSExtentionObject> makeChild()
{
    const auto who = [](ProbeCall& call) {
        call.result = text("child");
        return KR_OK;
    };
    return Ref<IJSExtentionObject>::adopt(new Probe(2, { { u"who", 0, who } }));
}

KJSVariant handedOut(Ref<IJSExtentionObject> object)
{
    return KJSVariant::fromUnknown(new SubObject(std::move(object)));
}

/// What no script can pass.
KJSVariant nativeValue(const QString& kind)
{
    static const KJSVariant target = KJSVariant::fromInt32(9);
    MVARIANT made {};
    if (kind == QLatin1String("error")) {
        made.vt = MV_ERROR;
        made.scode = KR_NO_MEMORY;
        return { made, nullptr };
    }
    if (kind == QLatin1String("reference")) {
        made.vt = MV_BYREF_VARIANT;
        made.pvarVal = const_cast<MVARIANT*>(&target.raw());
        return { made, nullptr };
    }
    if (kind == QLatin1String("list")) {
        Ref<IJSArray> list = makeScriptArray();
        for (int i = 0; i < 20; ++i)
            list->Append(KJSVariant::fromInt32(i));
        return KJSVariant::fromUnknown(list.release(), MV_ARRAY);
    }
    KJSVariant value = target;
    for (int level = kind.toInt(); level > 0; --level) {
        Ref<IJSONValue> outer = makeScriptObject();
        outer->SetValue(level % 2 ? QStringLiteral("a") : QStringLiteral("b"), value);
        value = KJSVariant::fromUnknown(outer.release());
    }
    return value;
}

/// What native code sees, in words.
QString seen(const KJSVariant& value)
{
    const MVARIANT& raw = value.raw();
    QStringList items;
    switch (raw.vt) {
    case MV_EMPTY:
        return QStringLiteral("empty");
    case MV_NULL:
        return QStringLiteral("null");
    case MV_BOOL:
        return raw.boolVal == -1 ? QStringLiteral("true") : QStringLiteral("false");
    case MV_INT32:
        return QStringLiteral("int %1").arg(raw.lVal);
    case MV_INT64:
        return QStringLiteral("long %1").arg(raw.llVal);
    case MV_DOUBLE:
        return (std::signbit(raw.dblVal) ? QStringLiteral("double -%1") : QStringLiteral("double %1"))
            .arg(std::fabs(raw.dblVal));
    case MV_STRING:
        for (const char16_t unit : value.text())
            items += unit >= 0x20 && unit < 0x7f ? QString(QChar(unit))
                                                 : QStringLiteral("<%1>").arg(static_cast<int>(unit), 0, 16);
        return QStringLiteral("'%1'").arg(items.join(QString()));
    default:
        break;
    }
    if (const IJSArray* array = arrayOf(value)) {
        for (std::int32_t i = 0; i < array->Count(); ++i)
            items += seen(*array->At(i));
        return QStringLiteral("[%1]").arg(items.join(QStringLiteral(", ")));
    }
    if (const IJSONValue* object = objectOf(value)) {
        const QString* key = nullptr;
        const KJSVariant* item = nullptr;
        for (std::int32_t i = 0; object->At(i, &key, &item); ++i)
            items += *key + QStringLiteral(": ") + seen(*item);
        return QStringLiteral("{%1}").arg(items.join(QStringLiteral(", ")));
    }
    return functionOf(value) ? QStringLiteral("function") : QStringLiteral("native object");
}

} // namespace

int liveProbes()
{
    return s_liveProbes;
}

Ref<IJSFunction> functionOf(const KJSVariant& value)
{
    void* function = nullptr;
    value.raw().punkVal->QueryInterface(IID_IJSFunction, &function);
    return Ref<IJSFunction>::adopt(static_cast<IJSFunction*>(function));
}

void PageTest::addMembers()
{
    const auto returns = [this](const char16_t* name, std::function<KJSVariant(ProbeCall&)> body) {
        method(name, [body = std::move(body)](ProbeCall& call) {
            call.result = body(call);
            return KR_OK;
        });
    };
    returns(u"raw", [](ProbeCall&) { return KJSVariant::fromInt32(1); });
    returns(u"full", [](ProbeCall& call) {
        return envelope(call.arguments.size() ? call.arguments[0] : KJSVariant::fromInt32(2));
    });
    method(u"take", [this](ProbeCall&) {
        ++taken;
        return KR_OK;
    });
    method(u"fail", [](ProbeCall& call) {
        call.exception = makeFailure(7, QStringLiteral("no luck"));
        return KR_REJECTED;
    });
    // Script runs before the answer is made, or after it, when the arguments end.
    for (const bool isFull : { true, false }) {
        const KJSVariant answer = isFull ? envelope(KJSVariant::fromInt32(3)) : KJSVariant::fromInt32(4);
        returns(isFull ? u"fullAfter" : u"rawAfter", [answer](ProbeCall& call) {
            functionOf(call.arguments[0])->Call({}, nullptr);
            return answer;
        });
        returns(isFull ? u"fullBefore" : u"rawBefore", [answer](ProbeCall& call) {
            const KJSVariant atItsEnd = KJSVariant::fromUnknown(new CallsAtItsEnd(call.arguments[1]));
            objectOf(call.arguments[0])->SetValue(QStringLiteral("x"), atItsEnd);
            return answer;
        });
    }
    returns(u"__proto__", [](ProbeCall&) { return text("odd name"); });
    returns(u"\"]\n", [](ProbeCall&) { return text("odder name"); });
    returns(u"echo", [](ProbeCall& call) { return call.arguments[0]; });
    returns(u"see", [](ProbeCall& call) {
        QStringList all;
        for (const KJSVariant& value : call.arguments)
            all += seen(value);
        return makeText(all.join(QStringLiteral(" | ")));
    });
    returns(u"native", [](ProbeCall& call) { return nativeValue(stringOf(call.arguments[0])); });
    returns(u"enveloped", [](ProbeCall& call) { return envelope(nativeValue(stringOf(call.arguments[0]))); });
    returns(u"fresh", [](ProbeCall&) { return handedOut(makeChild()); });
    returns(u"keys", [](ProbeCall& call) {
        QStringList keys;
        objectOf(call.arguments[0])->Keys(keys);
        return makeText(keys.join(QLatin1Char(',')));
    });
    // With as many texts "x" as the second argument says.
    returns(u"call", [](ProbeCall& call) {
        const auto count =
            static_cast<std::size_t>(call.arguments.size() > 1 ? call.arguments[1].raw().lVal : 0);
        const std::vector<KJSVariant> given(count, text("x"));
        KJSVariant answer;
        const KResult status = functionOf(call.arguments[0])->Call({ given.data(), given.size() }, &answer);
        return status == KR_OK ? answer : KJSVariant::fromInt32(static_cast<std::int32_t>(status));
    });
    method(u"keep", [this](ProbeCall& call) {
        kept = functionOf(call.arguments[0]);
        return KR_OK;
    });
    const QString event = QStringLiteral("e");
    method(u"listen", [event](ProbeCall& call) {
        return GetVEXJSCore()->EventHubs()->ClassHub(1)->Add(event, call.context, call.arguments[0]);
    });
    method(u"dispatch", [event](ProbeCall& call) {
        const JSContextEnv where = call.arguments.size() ? JSContextEnv::everyContext() : call.context;
        return GetVEXJSCore()->EventHubs()->ClassHub(1)->Dispatch(
            event, where, { call.arguments.begin(), call.arguments.end() });
    });
    method(u"later", [this](ProbeCall& call) {
        pending = GetVEXJSCore()->PromiseService()->CreatePending(call.context, call.result);
        return KR_OK;
    });
    for (const bool isResolved : { true, false }) {
        method(isResolved ? u"settled" : u"refused", [isResolved](ProbeCall& call) {
            return GetVEXJSCore()->PromiseService()->CreateSettled(
                isResolved ? JSPromiseState::Resolved : JSPromiseState::Rejected, call.context,
                [](KJSVariant& value) { value = text("empty handle."); }, call.result);
        });
    }
    const auto property = [this](const char16_t* name, std::function<KJSVariant()> body) {
        members.push_back({ name, 1, [body = std::move(body)](ProbeCall& call) {
                               call.result = body();
                               return KR_OK;
                           } });
    };
    property(u"Full", [] { return envelope(KJSVariant::fromInt32(7)); });
    property(u"Child", [child = makeChild()] { return handedOut(child); });
}

KResult PageTest::bindProbe(std::int64_t context, std::int64_t target)
{
    return GetVEXJSCore()->Registry()->Bind(new Probe(1, members), context, target, 0);
}

PageTest::PageTest()
    : core(Core::start({}))
{
    addMembers();
    core.setFactories({ { QStringLiteral("Probe"), bindProbe },
        { QStringLiteral("Broken"), [](std::int64_t, std::int64_t) { return KR_NOT_AVAILABLE; } } });
    page = open();
}

PageTest::~PageTest()
{
    page.reset();
    engine.reset();
    Core::stop();
    QCoreApplication::sendPostedEvents();
    kept = {};
    members.clear();
    EXPECT_EQ(liveProbes(), 0);
}

std::unique_ptr<Page> PageTest::open()
{
    PageHost host;
    host.console = [this](const QString& line, bool isError) {
        lines += (isError ? QStringLiteral("E ") : QString()) + line.section(QLatin1Char('\n'), 0, 0);
    };
    host.uncaughtError = [this](const Outcome& error) { uncaught.push_back(error); };
    const auto token = std::make_shared<int>();
    playing = token;
    host.play = [this, token](const QString& steps) {
        played += steps;
        return QString();
    };
    host.exitRequested = [this](int code) {
        exits.push_back(code);
        onExit();
    };
    PageOptions options;
    options.arguments = QStringList { QStringLiteral("page.js"), QStringLiteral("-x") };
    return engine->openPage(options, std::move(host));
}

Outcome PageTest::run(const QString& source, Page* where)
{
    std::vector<Outcome> outcomes;
    (where ? where : page.get())->run(source, QStringLiteral("test.js"), [&](const Outcome& outcome) {
        outcomes.push_back(outcome);
    });
    EXPECT_TRUE(outcomes.empty()) << "answered from inside the call";
    EXPECT_TRUE(waitFor([&] { return !outcomes.empty(); })) << source;
    return outcomes.empty() ? Outcome {} : outcomes.front();
}

Outcome PageTest::evaluate(const QString& line)
{
    std::vector<Outcome> outcomes;
    page->evaluate({ line }, [&](const Outcome& outcome) { outcomes.push_back(outcome); });
    EXPECT_TRUE(waitFor([&] { return !outcomes.empty(); })) << line;
    return outcomes.empty() ? Outcome {} : outcomes.front();
}

QString PageTest::shown(const Outcome& outcome)
{
    if (!outcome.ok)
        return QLatin1Char('!') + outcome.text;
    return outcome.json.isEmpty() ? outcome.text : outcome.json;
}

QString PageTest::textOf(const Outcome& outcome)
{
    const QString list = QLatin1Char('[') + outcome.json + QLatin1Char(']');
    return QJsonDocument::fromJson(list.toUtf8()).array()[0].toString(outcome.text);
}

void PageTest::expectShown(const QString& found, const QString& expected)
{
    if (expected.startsWith(QLatin1Char('!')))
        EXPECT_TRUE(found.startsWith(expected)) << found << "\ninstead of " << expected;
    else
        EXPECT_EQ(found, expected);
}

bool PageTest::waitFor(const std::function<bool()>& isSo)
{
    QElapsedTimer timer;
    for (timer.start(); !isSo() && timer.elapsed() < 60'000;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    return isSo();
}

void PageTest::letPass(int milliseconds)
{
    bool hasPassed = false;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, [&] { hasPassed = true; });
    waitFor([&] { return hasPassed; });
}

} // namespace engine::test
