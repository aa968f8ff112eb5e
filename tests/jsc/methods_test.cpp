#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

KJSVariant object(std::initializer_list<std::pair<const char*, KJSVariant>> pairs)
{
    Ref<IJSONValue> made = makeScriptObject();
    for (const auto& [key, value] : pairs)
        made->SetValue(QString::fromUtf8(key), value);
    return KJSVariant::fromUnknown(made.release());
}

KJSVariant envelope(const KJSVariant& data)
{
    return object({ { "data", data }, { "success", KJSVariant::fromBool(true) } });
}

KResult callBack(const KJSVariant& function)
{
    void* found = nullptr;
    function.raw().punkVal->QueryInterface(IID_IJSFunction, &found);
    return Ref<IJSFunction>::adopt(static_cast<IJSFunction*>(found))->Call({}, nullptr);
}

/// Calls a function of script when it ends.
inline const KIID noId {};
class CallsAtItsEnd final : public Counted<IUnknown, noId> {
public:
    explicit CallsAtItsEnd(const KJSVariant& function)
        : m_function(function)
    {
    }
    ~CallsAtItsEnd() override { callBack(m_function); }

private:
    KJSVariant m_function;
};

struct MethodCase {
    const char* name;
    const char* script;
    const char* shown;
};

/// Members of every kind of answer: raw, enveloped, none, thrown; some run script on their way.
class Methods : public PageTest, public testing::WithParamInterface<MethodCase> {
protected:
    Methods()
    {
        method(u"raw", [](ProbeCall& call) {
            call.result = KJSVariant::fromInt32(1);
            return KR_OK;
        });
        method(u"full", [](ProbeCall& call) {
            call.result = envelope(call.arguments.size() ? call.arguments[0] : KJSVariant::fromInt32(2));
            return KR_OK;
        });
        method(u"none", [](ProbeCall&) { return KR_OK; });
        method(u"fail", [](ProbeCall& call) {
            call.exception = makeFailure(7, QStringLiteral("no luck"));
            return KR_REJECTED;
        });
        method(u"fullAfter", [](ProbeCall& call) {
            callBack(call.arguments[0]);
            call.result = envelope(KJSVariant::fromInt32(3));
            return KR_OK;
        });
        method(u"rawAfter", [](ProbeCall& call) {
            callBack(call.arguments[0]);
            call.result = KJSVariant::fromInt32(4);
            return KR_OK;
        });
        method(u"fullBefore", [](ProbeCall& call) {
            keepToTheEnd(call);
            call.result = envelope(KJSVariant::fromInt32(5));
            return KR_OK;
        });
        method(u"rawBefore", [](ProbeCall& call) {
            keepToTheEnd(call);
            call.result = KJSVariant::fromInt32(6);
            return KR_OK;
        });
        method(u"__proto__", [](ProbeCall& call) {
            call.result = text("odd name");
            return KR_OK;
        });
        method(u"\"]\n", [](ProbeCall& call) {
            call.result = text("odder name");
            return KR_OK;
        });
        property(u"Full", [](ProbeCall& call) {
            call.result = envelope(KJSVariant::fromInt32(7));
            return KR_OK;
        });
    }

private:
    // The arguments end after the answer has been made.
    static void keepToTheEnd(ProbeCall& call)
    {
        objectOf(call.arguments[0])
            ->SetValue(QStringLiteral("x"), KJSVariant::fromUnknown(new CallsAtItsEnd(call.arguments[1])));
    }
};

TEST_P(Methods, Behave)
{
    const QByteArray source = QByteArray("const p = NovaExtension.Probe;") + GetParam().script;
    EXPECT_EQ(answer(source), QString::fromUtf8(GetParam().shown));
    EXPECT_TRUE(uncaught.empty());
}

INSTANTIATE_TEST_SUITE_P(Functions, Methods,
    testing::Values(MethodCase { "NameAndLength", "return [p.full.name, p.full.length, Object.keys(p.full)]",
                        "[\"full\",0,[]]" },
        MethodCase { "AreNoConstructors",
            "try { new p.full() } catch (e) { return [e instanceof TypeError, 'prototype' in p.full] }",
            "[true,false]" },
        MethodCase { "TextSaysNative", "return /^full\\(.*\\[native code\\]/.test(p.full)", "true" },
        MethodCase { "ArePlainProperties",
            "const d = Object.getOwnPropertyDescriptor(Object.getPrototypeOf(p), 'full');"
            "return [typeof d.value, d.writable, d.enumerable, d.configurable]",
            "[\"function\",true,true,true]" },
        MethodCase { "KeepTheirOrder", "return Object.keys(Object.getPrototypeOf(p)).slice(0, 3)",
            "[\"raw\",\"full\",\"none\"]" },
        MethodCase { "OddNames", "return [p['__proto__'](), p['\"]\\n'](), typeof p.full]",
            "[\"odd name\",\"odder name\",\"function\"]" },
        MethodCase { "StackNamesMemberAndCaller",
            "try { p.fail() } catch (e) { return /fail@/.test(e.stack) && /test\\.js/.test(e.stack) }",
            "true" },
        MethodCase { "PassedOnTheyMissTheirObject",
            "try { [1].forEach(p.full) } catch (e) { return e.message }", "\"Illegal invocation\"" }),
    caseName<MethodCase>);

INSTANTIATE_TEST_SUITE_P(Answers, Methods,
    testing::Values(MethodCase { "EveryKind", "return [p.raw(), p.full(), p.none() === undefined, p.raw()]",
                        "[1,{\"data\":2,\"success\":true},true,1]" },
        MethodCase { "EveryKindCompiled",
            "for (let i = 0; i < 30000; ++i) {"
            "const full = p.full(i), raw = p.raw(), none = p.none();"
            "if (full.data !== i || full.success !== true || raw !== 1 || none !== undefined) return i;"
            "} return 'right'",
            "\"right\"" },
        MethodCase { "FreshObjectEachTime",
            "const a = p.full(); a.data = 9; return [p.full().data, p.full() === a]", "[2,false]" },
        MethodCase { "AfterAFailure",
            "p.full(); try { p.fail() } catch { } const a = p.raw(); try { p.fail() } catch { }"
            "return [a, p.full()]",
            "[1,{\"data\":2,\"success\":true}]" },
        MethodCase { "GettersAnswerWhole", "p.raw(); return [p.Full, p.raw(), p.Full]",
            "[{\"data\":7,\"success\":true},1,{\"data\":7,\"success\":true}]" },
        MethodCase { "CallsWithinCalls",
            "return [p.fullAfter(() => p.raw()), p.rawAfter(() => p.full()), p.fullAfter(() => p.none())]",
            "[{\"data\":3,\"success\":true},4,{\"data\":3,\"success\":true}]" },
        MethodCase { "CallsInGetters",
            "return [p.full({ get a() { return p.raw() } }), p.rawAfter(() => p.full({ get a() { return "
            "p.full() } }))]",
            "[{\"data\":{\"a\":1},\"success\":true},4]" },
        MethodCase { "CallsAtTheEndOfCalls",
            "let n = 0; const full = () => { n += p.full().data }, raw = () => { n += p.raw() };"
            "return [p.fullBefore({}, raw), p.rawBefore({}, full), n]",
            "[{\"data\":5,\"success\":true},6,3]" }),
    caseName<MethodCase>);

// Functions of the page that are called on the way see neither the native function nor the method.
INSTANTIATE_TEST_SUITE_P(NativeFunctions, Methods,
    testing::Values(MethodCase { "NotShownToCallbacks",
                        "const find = new Function('p', 'let n; function f() { n = f.caller } p.rawAfter(f); "
                        "return String(n)'); return find(p)",
                        "\"null\"" },
        MethodCase { "NotShownToGetters",
            "const find = new Function('p', 'let n; function f() { n = f.caller } "
            "p.full(Object.defineProperty({}, \"a\", { get: f, enumerable: true })); return String(n)');"
            "return find(p)",
            "\"null\"" },
        MethodCase { "NotShownToGettersOfItems",
            "const find = new Function('p', 'let n; function f() { n = f.caller } "
            "p.full(Object.defineProperty([], 0, { get: f, enumerable: true })); return String(n)');"
            "return find(p)",
            "\"null\"" },
        MethodCase { "MethodHasNoArgumentsToSee",
            "let seen = 0; p.rawAfter(() => { try { seen = p.rawAfter.arguments } catch { seen = 'refused' } "
            "});"
            "return seen",
            "\"refused\"" }),
    caseName<MethodCase>);

} // namespace
