#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;

namespace {

struct RefusalCase {
    const char* name;
    const char* script; ///< the arguments
    const char* part;   ///< of the message; empty: not refused
};

class Refusals : public PageTest, public testing::WithParamInterface<RefusalCase> { };

TEST_P(Refusals, NameTheArgumentAndThePlace)
{
    int calls = 0;
    method(u"take", [&](ProbeCall&) {
        ++calls;
        return KR_OK;
    });
    const QByteArray source =
        QByteArray("const nest = (n, v = 0) => { for (; n > 0; --n) v = { a: v }; return v };"
                   "const dag = () => { let v = []; for (let i = 0; i < 64; ++i) v = [v, v];"
                   "return v };"
                   "let traps = 0; const trap = () => { ++traps };"
                   "const handler = new Proxy({}, { get: () => trap });"
                   "const p = NovaExtension.Probe;"
                   "try { p.take(")
        + GetParam().script
        + "); return '' } catch (e) { return [e instanceof Error, e.success, e.code, e.message === e.msg, "
          "traps,"
          "e.message] }";
    const Outcome outcome = run(source);
    ASSERT_TRUE(outcome.ok) << outcome.text;
    if (!*GetParam().part) {
        EXPECT_EQ(outcome.json, QStringLiteral("\"\""));
        EXPECT_EQ(calls, 1);
        return;
    }
    EXPECT_TRUE(outcome.json.startsWith(QStringLiteral("[true,false,1,true,0,"))) << outcome.json;
    EXPECT_TRUE(outcome.json.contains(QString::fromLatin1(GetParam().part))) << outcome.json;
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(core.liveCounts().functions, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Refusals,
    testing::Values(RefusalCase { "Symbol", "1, Symbol('x')", "argument 2: a symbol can not be passed" },
        RefusalCase { "PathOfObjectAndArray", "{ a: { 'b c': [0, Symbol()] } }", "(at a[\\\"b c\\\"][1])" },
        RefusalCase { "FunctionsBeforeItAreLetGo", "() => 0, [() => 0, Symbol()]", "argument 2: " },
        RefusalCase { "Proxy", "new Proxy({}, handler)", "a proxy can not be passed" },
        RefusalCase { "ProxyOfArray", "[new Proxy([], handler)]", "a proxy can not be passed (at [0])" },
        RefusalCase { "ProxyOfFunction", "new Proxy(() => 0, handler)", "a proxy can not be passed" },
        RefusalCase {
            "ProxyAsPrototype", "Object.create(new Proxy({}, handler))", "a proxy as its prototype" },
        RefusalCase { "RevokedProxy",
            "(() => { const r = Proxy.revocable({}, {}); r.revoke(); return r.proxy })()", "argument 1: " },
        RefusalCase { "Date", "new Date", "a Date can not be passed" },
        RefusalCase { "Map", "{ m: new Map }", "a Map can not be passed (at m)" },
        RefusalCase { "SubclassOfMap", "new (class extends Map { })", "a Map can not be passed" },
        RefusalCase { "Set", "new Set", "a Set can not be passed" },
        RefusalCase { "RegExp", "/x/", "a RegExp can not be passed" },
        RefusalCase { "Promise", "Promise.resolve()", "a Promise can not be passed" },
        RefusalCase { "ArrayBuffer", "new ArrayBuffer(8)", "an ArrayBuffer can not be passed" },
        RefusalCase { "TypedArray", "new Uint8Array(8)", "an Uint8Array can not be passed" },
        RefusalCase { "Error", "new RangeError('x')", "a RangeError can not be passed" },
        RefusalCase { "BoxedText", "Object('x')", "a String can not be passed" },
        RefusalCase { "Generator", "(function* () { })()", "a Generator can not be passed" },
        RefusalCase { "WideBigInt", "9223372036854775808n", "a BigInt of more than 64 bits" },
        RefusalCase { "NarrowBigInt", "-9223372036854775809n", "a BigInt of more than 64 bits" }),
    caseName<RefusalCase>);

INSTANTIATE_TEST_SUITE_P(Getters, Refusals,
    testing::Values(RefusalCase { "Throws", "{ get a() { throw new TypeError('oops') } }",
                        "threw: TypeError: oops (at a)" },
        RefusalCase { "ThrowsText", "[{ get a() { throw 'why' } }]", "threw: why (at [0].a)" },
        RefusalCase { "ThrowsWhatThrows",
            "{ get a() { throw { get msg() { throw 1 }, get code() { throw 2 } } } }", "reading it threw: " },
        RefusalCase {
            "ElementThrows", "Object.defineProperty([], 0, { get() { throw 'x' } })", "threw: x (at [0])" },
        RefusalCase { "EndlessRecursion", "{ get a() { const f = () => f(); f() } }", "threw: RangeError" },
        RefusalCase {
            "CallsItself", "(() => { const o = { get a() { p.take(o) } }; return o })()", "RangeError" }),
    caseName<RefusalCase>);

INSTANTIATE_TEST_SUITE_P(Limits, Refusals,
    testing::Values(RefusalCase { "Cycle", "(() => { const o = { a: {} }; o.a.b = o; return o })()",
                        "a cycle can not be passed (at a.b)" },
        RefusalCase { "DeepCycle", "(() => { const o = {}; o.a = nest(50, o); return o })()", "a cycle" },
        RefusalCase { "CycleOfArrays", "(() => { const a = []; a.push(a); return a })()", "a cycle" },
        RefusalCase { "DeepestNesting", "nest(1000)", "" },
        RefusalCase { "TooDeep", "nest(1001)", "nested deeper than 1000" },
        RefusalCase { "LongPathIsCut", "nest(300, Symbol())", "a.a.a.a...)" },
        RefusalCase { "HugeSparseArray", "new Array(4294967295)", "more than 1000000 values" },
        RefusalCase { "ExponentialSharing", "dag()", "more than 1000000 values" },
        RefusalCase { "ManyValuesOverAll", "new Array(600000).fill(0), new Array(600000).fill(0)",
            "argument 2: more than 1000000 values" },
        RefusalCase {
            "MuchText", "'x'.repeat(1 << 26), 'x'.repeat(1 << 27)", "argument 2: more than 256 MB of text" },
        RefusalCase { "MostArguments", "...new Array(255).fill(0)", "" },
        RefusalCase { "TooManyArguments", "...new Array(256).fill(0)", "more than 255 arguments" }),
    caseName<RefusalCase>);

} // namespace
