#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

struct TamperCase {
    const char* name;
    const char* script; ///< what the page does to its world first
};

class Tampering : public PageTest, public testing::WithParamInterface<TamperCase> { };

// The page breaks its own world; what the engine makes and shows must not change.
TEST_P(Tampering, ChangesNothingOfTheEngine)
{
    method(u"make", [](ProbeCall& call) {
        Ref<IJSONValue> made = makeScriptObject();
        Ref<IJSArray> list = makeScriptArray();
        for (int i = 0; i < 20; ++i)
            list->Append(KJSVariant::fromInt32(i));
        made->SetValue(QStringLiteral("data"), KJSVariant::fromUnknown(list.release(), MV_ARRAY));
        made->SetBoolean(QStringLiteral("success"), true);
        call.result = KJSVariant::fromUnknown(made.release());
        return KR_OK;
    });
    method(u"keys", [](ProbeCall& call) {
        QStringList keys;
        objectOf(call.arguments[0])->Keys(keys);
        call.result = makeText(keys.join(QLatin1Char(',')));
        return KR_OK;
    });
    method(u"fail", [](ProbeCall& call) {
        call.exception = makeFailure(7, QStringLiteral("no luck"));
        return KR_REJECTED;
    });
    run("globalThis.taken = 0; globalThis.steal = { __proto__: null, configurable: true, get() { ++taken; "
        "return () => "
        "'stolen' },"
        "set() { ++taken } }; NovaExtension.Probe");
    run(GetParam().script);

    const Outcome made = run("const p = NovaExtension.Probe; let x = p.make(); x = p.make(); x = p.make();"
                             "return (x.success === true && x.data[19] === 19) + ' ' + taken");
    EXPECT_EQ(made.text, QStringLiteral("true 0"));
    EXPECT_EQ(run("return NovaExtension.Probe.keys({ a: 1, b: [2] })").text, QStringLiteral("a,b"));
    const Outcome failed = run("NovaExtension.Probe.fail()");
    EXPECT_TRUE(failed.text == QStringLiteral("no luck") && failed.code == 7) << failed.text;
    run("console.log('line', [1, { a: 2 }])");
    EXPECT_EQ(lines, QStringList { QStringLiteral("line [1, { a: 2 }]") });
    EXPECT_EQ(run("await null; return 5").text, QStringLiteral("5"));
    EXPECT_FALSE(page->propertyNames(QStringLiteral("NovaExtension.Probe")).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Pages, Tampering,
    testing::Values(TamperCase { "ObjectPrototypeSetters",
                        "for (const k of ['data', 'success', 'code', 'msg', 'value', 'a', 'get', 'next'])"
                        "Object.defineProperty(Object.prototype, k, steal)" },
        TamperCase { "ArrayPrototypeSetters",
            "for (let i = 0; i < 30; ++i) Object.defineProperty(Array.prototype, i, steal)" },
        TamperCase { "IndexedObjectPrototype",
            "for (let i = 0; i < 30; ++i) Object.defineProperty(Object.prototype, i, steal)" },
        TamperCase { "TypedArraysAreBroken",
            "const all = Object.getPrototypeOf(Int32Array.prototype);"
            "for (const k of ['length', 'buffer', 'at', 'valueOf', Symbol.iterator, Symbol.species])"
            "for (const o of [all, Int32Array.prototype]) Object.defineProperty(o, k, steal);"
            "globalThis.Int32Array = class { }" },
        TamperCase { "ArrayPrototypeIsEmpty",
            "for (const k of Reflect.ownKeys(Array.prototype)) try { delete Array.prototype[k] } catch { }" },
        TamperCase { "GlobalsAreGone",
            "const names = Reflect.ownKeys(globalThis), gone = Reflect.deleteProperty;"
            "for (const k of names) if (k !== 'NovaExtension' && k !== 'console' && k !== 'taken') "
            "gone(globalThis, k)" },
        TamperCase { "FunctionPrototypeIsBroken",
            "Function.prototype.call = Function.prototype.apply = Function.prototype.bind = () => { throw 1 "
            "}" },
        TamperCase { "ArgumentsAreBroken",
            "const a = (function () { return arguments })(), o = Object.prototype;"
            "for (const k of ['length', 'callee', Symbol.iterator]) Object.defineProperty(o, k, steal)" },
        TamperCase { "ObjectFunctionsAreBroken",
            "for (const o of [Object, Reflect, JSON, Array, Number])"
            "for (const k of Reflect.ownKeys(o)) try { o[k] = () => { throw 1 } } catch { }" },
        TamperCase { "PromiseIsBroken",
            "Promise.prototype.then = Promise.prototype.catch = () => { throw 1 }; Promise.resolve = () => 0;"
            "Object.defineProperty(Promise, Symbol.species, { get() { throw 1 } })" },
        TamperCase { "ErrorIsBroken",
            "const E = Error; globalThis.Error = function () { throw 1 }; E.stackTraceLimit = 'x';"
            "Object.defineProperty(E, Symbol.hasInstance, { value() { throw 1 } })" },
        TamperCase { "StringPrototypeIsBroken",
            "for (const k of ['slice', 'startsWith', 'toString', 'valueOf'])"
            "String.prototype[k] = () => { throw 1 }" }),
    caseName<TamperCase>);

TEST_F(PageTest, FrozenNovaExtensionStillAnswers)
{
    EXPECT_EQ(answer("Object.freeze(NovaExtension); return NovaExtension.Probe === NovaExtension.Probe"),
        QStringLiteral("true"));
}

} // namespace
