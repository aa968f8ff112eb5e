// Tables of scripts: what each shows, logs, passes to native code, or is refused.
#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;

namespace {

/// Scripts find Probe as `p`, and what comes back when a value has been there and back three times by
/// e(value).
class Scripts : public RowTest {
protected:
    Scripts()
    {
        run("Object.defineProperty(globalThis, 'p', { get: () => NovaExtension.Probe });"
            "Object.defineProperty(globalThis, 'e', { value: (x) => (p.echo(x), p.echo(x), p.echo(x)) })");
    }
};

// Behind an expected error may stand "@" and a place that its stack names.
TEST_P(Scripts, Answer)
{
    const Outcome outcome = run(GetParam().given);
    expectShown(shown(outcome), GetParam().expected.section(QLatin1String(" @"), 0, 0));
    EXPECT_TRUE(outcome.stack.contains(GetParam().expected.section(QLatin1String(" @"), 1))) << outcome.stack;
    EXPECT_TRUE(uncaught.empty());
}

INSTANTIATE_TEST_SUITE_P(Page, Scripts, testing::ValuesIn(rows(R"js(
Value: return { a: [1, 'x', null] } -> {"a":[1,"x",null]}
Nothing: -> undefined
AwaitAtTop: const x = await Promise.resolve(2); return Promise.resolve(x + 1) -> 3
BigIntAsLiteral: return { n: 12345678901234567890n } -> {"n":12345678901234567890}
CycleHasText: const o = { a: 1 }; o.self = o; return o -> <ref *1> { a: 1, self: [Circular *1] }
FunctionHasText: return function f() { } -> [Function: f]
Throws:

 null.x -> !TypeError: null is not an object @test.js:3
ThrowsText: throw 'x' -> !x
ThrowsHostile: throw { get msg() { throw 1 }, toString() { throw 2 } } -> !
SyntaxError:
 let = = 1 -> !SyntaxError: @test.js:2
ClosesItsFunction: }); console.log('out'); (async () => { -> !SyntaxError:
ClosesAMethod: }, async other() { -> !SyntaxError:
ExitByText: exit('x') -> !TypeError: exit: the code @test.js:1
ExitBeyondAByte: exit(256) -> !TypeError: exit: the code @test.js:1
EndlessRecursion: const f = () => f(); f() -> !RangeError:
LastLineComment: return 1 // end -> 1
Hashbang: #!/bin/x
 return 1 -> 1
ProcessArguments: return process.argv -> ["page.js","-x"]
NoHostNames: return Object.keys(globalThis) -> []
UnknownObject: return NovaExtension.Nothing -> undefined
UnboundObject: NovaExtension.Broken -> !NovaExtension.Broken can not be bound: 0x80000008
UnboundObjectHasCode: try { NovaExtension.Broken } catch (e) { return [e.success, e.code] } -> [false,3]
BoundOnce: return [p === p, 'value' in Object.getOwnPropertyDescriptor(NovaExtension, 'Probe'), String(p)] -> [true,true,"[object NovaExtension.Probe]"]
BoundOnceThoughFrozen: Object.freeze(NovaExtension); return p === p -> true
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Methods, Scripts, testing::ValuesIn(rows(R"js(
NameAndLength: return [p.full.name, p.full.length, Object.keys(p.full)] -> ["full",0,[]]
AreNoConstructors: try { new p.full() } catch (e) { return [e instanceof TypeError, 'prototype' in p.full] } -> [true,false]
TextSaysNative: return /^full\(.*\[native code\]/.test(p.full) -> true
ArePlainProperties: const d = Object.getOwnPropertyDescriptor(Object.getPrototypeOf(p), 'full');
 return [typeof d.value, d.writable, d.enumerable, d.configurable] -> ["function",true,true,true]
KeepTheirOrder: return Object.keys(Object.getPrototypeOf(p)).slice(0, 3) -> ["raw","full","take"]
OddNames: return [p['__proto__'](), p['"]\n'](), typeof p.full] -> ["odd name","odder name","function"]
FailuresAreErrors: try { p.fail() } catch (e) { return [e instanceof Error, e.message, e.success, e.code, e.msg] } -> [true,"no luck",false,7,"no luck"]
StackNamesMemberAndCaller: try { p.fail() } catch (e) { return /fail@/.test(e.stack) && /test\.js/.test(e.stack) } -> true
NoThis: const f = p.raw; f() -> !TypeError: Illegal invocation
OtherThis: p.raw.call({}) -> !TypeError: Illegal invocation
HeirAsThis: Object.create(p).raw() -> !TypeError: Illegal invocation
ThisOfAnotherClass: p.raw.call(p.Child) -> !TypeError: Illegal invocation
PassedOnTheyMissTheirObject: [1].forEach(p.raw) -> !TypeError: Illegal invocation
CallsDownToTheEndOfTheStack: const f = () => { p.take({ a: [1] }); f() }; f() -> !RangeError: Maximum call stack size exceeded.
EveryKind: return [p.raw(), p.full(), p.take() === undefined, p.raw()] -> [1,{"data":2,"success":true},true,1]
EveryKindCompiled: for (let i = 0; i < 30000; ++i) {
    const full = p.full(i), raw = p.raw(), none = p.take();
    if (full.data !== i || full.success !== true || raw !== 1 || none !== undefined) return i;
 } return 'right' -> "right"
FreshObjectEachTime: const a = p.full(); a.data = 9; return [p.full().data, p.full() === a] -> [2,false]
AfterAFailure: p.full(); try { p.fail() } catch { } const a = p.raw(); try { p.fail() } catch { } return [a, p.full()] -> [1,{"data":2,"success":true}]
GettersAnswerWhole: p.raw(); return [p.Full, p.raw(), p.Full] -> [{"data":7,"success":true},1,{"data":7,"success":true}]
CallsWithinCalls: return [p.fullAfter(() => p.raw()), p.rawAfter(() => p.full()), p.fullAfter(() => p.take())] -> [{"data":3,"success":true},4,{"data":3,"success":true}]
CallsInGetters: return [p.full({ get a() { return p.raw() } }), p.rawAfter(() => p.full({ get a() { return p.full() } }))] -> [{"data":{"a":1},"success":true},4]
CallsAtTheEndOfCalls: let n = 0; const full = () => { n += p.full().data }, raw = () => { n += p.raw() };
 return [p.fullBefore({}, raw), p.rawBefore({}, full), n] -> [{"data":3,"success":true},4,3]
)js")),
    rowName);

// Functions of the page that are called on the way see neither the native function nor the method.
INSTANTIATE_TEST_SUITE_P(NativeFunctions, Scripts, testing::ValuesIn(rows(R"js(
NotShownToCallbacks: return new Function('let n; function f() { n = f.caller } p.rawAfter(f); return String(n)')() -> "null"
NotShownToGetters: return new Function('let n; function f() { n = f.caller } p.full(Object.defineProperty({}, "a", { get: f, enumerable: true })); return String(n)')() -> "null"
NotShownToGettersOfItems: return new Function('let n; function f() { n = f.caller } p.full(Object.defineProperty([], 0, { get: f, enumerable: true })); return String(n)')() -> "null"
MethodHasNoArgumentsToSee: let seen = 0; p.rawAfter(() => { try { seen = p.rawAfter.arguments } catch { seen = 'refused' } }); return seen -> "refused"
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Results, Scripts, testing::ValuesIn(rows(R"js(
Undefined: return e(undefined) -> undefined
Simple: return e([null, true, -5, 0.25, 'x']) -> [null,true,-5,0.25,"x"]
ExactIntegers: return [9007199254740991n, -9007199254740991n].map((n) => [typeof e(n), e(n)]) -> [["number",9007199254740991],["number",-9007199254740991]]
WideIntegers: return [9007199254740992n, -9223372036854775808n].map((n) => [typeof e(n), e(n)]) -> [["bigint",9007199254740992],["bigint",-9223372036854775808]]
AnyText: const x = e('a\0\ud800z'); return [x.length, x.charCodeAt(1), x.charCodeAt(2)] -> [4,0,55296]
Object: return e({ b: 1, a: 'x' }) -> {"a":"x","b":1}
ObjectIsPlain: return [{}, { data: 1, success: true }].map((x) => Object.getPrototypeOf(e(x)) === Object.prototype) -> [true,true]
ProtoKeyIsOwn: const x = e(JSON.parse('{"__proto__": {}}')); return [Object.keys(x), Object.getPrototypeOf(x) === Object.prototype] -> [["__proto__"],true]
AwkwardKeys: return e({ 'a"]\n': '1', 7: '2' }) -> {"7":"2","a\"]\n":"1"}
WideObject: const x = e(Object.fromEntries(Array.from({ length: 100 }, (_, i) => ['k' + i, i]))); return [Object.keys(x).length, x.k99] -> [100,99]
LongArray: const x = e(Array.from({ length: 5000 }, (_, i) => i)); return [Array.isArray(x), x.length, x[4999]] -> [true,5000,4999]
DeepestNesting: return typeof p.native('1000') -> "object"
TooDeep: return p.native('1001') -> !the answer is nested too deep
ByReference: return p.native('reference') -> 9
ErrorValue: return p.native('error') -> !the answer is the error 0x80000002
ObjectsOfTheLanguageAreRefused: return [new Date, new Set, /x/, Promise.resolve(), new RangeError('x'), Object('x'), (function* () { })()]
    .map((x) => { try { p.take(x) } catch (e) { return e.msg.split(' ').slice(0, 4).join(' ') } }).join()
 -> "argument 1: a Date,argument 1: a Set,argument 1: a RegExp,argument 1: a Promise,argument 1: a RangeError,argument 1: a String,argument 1: a Generator"
BytesAsTheirOwn: const u = new Uint16Array([1, 258]); const x = e({ u, d: new DataView(u.buffer, 3), b: new ArrayBuffer(0) }); u.fill(7); return [x.u instanceof Uint8Array, ...x.u, ...x.d, x.b.length] -> [true,1,0,2,1,1,0]
FunctionsAndNativesAsThemselves: const f = () => 1; return [e(f) === f, e([f])[0] === f, e(p) === p] -> [true,true,true]
Envelope: return e({ data: 'x', success: true }) -> {"data":"x","success":true}
EnvelopeWithoutData: const x = e({ data: undefined, success: true }); return [Object.keys(x), x.data === undefined] -> [["data","success"],true]
EnvelopeAsData: return e({ data: { data: [0], success: true }, success: true }) -> {"data":{"data":[0],"success":true},"success":true}
EnvelopeWithMessage: return e({ data: 'x', msg: 'm', success: true }) -> {"data":"x","msg":"m","success":true}
NoSuccess: return e({ data: 'x', success: false }) -> {"data":"x","success":false}
SuccessIsANumber: return e({ data: 'x', success: 1 }) -> {"data":"x","success":1}
OtherKey: return e({ date: 'x', success: true }) -> {"date":"x","success":true}
OtherSuccess: return e({ data: 'x', succeed: true }) -> {"data":"x","succeed":true}
DataIsAnError: return p.enveloped('error') -> !the answer is the error 0x80000002
DataIsTooDeep: return p.enveloped('1000') -> !the answer is nested too deep
SubObject: const c = p.Child; return [c === p.Child, c.who(), String(c), Object.getPrototypeOf(c) === Object.getPrototypeOf(p.fresh())] -> [true,"child","[object NovaExtension.Probe.Child]",true]
PromiseRefused: const x = p.refused(); try { await x } catch (e) { return [x instanceof Promise, e instanceof Error, e.msg, e.success] } -> [true,true,"empty handle.",false]
FunctionsAnswerNativeCode: const f = (...all) => all.length; return [0, 16, 17, 300].map((n) => p.call(f, n)) -> [0,16,17,300]
MicrotasksWaitForTheCallInProgress: const seen = []; p.call(() => { queueMicrotask(() => seen.push('task')) });
 seen.push('after'); await null; return seen -> ["after","task"]
)js")),
    rowName);

class Arguments : public RowTest { };

TEST_P(Arguments, ReachNativeCode)
{
    EXPECT_EQ(textOf(run(QStringLiteral("return NovaExtension.Probe.see(%1)").arg(GetParam().given))),
        GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Values, Arguments, testing::ValuesIn(rows(R"js(
None: ->
NoValues: undefined, null -> empty | null
Booleans: true, false -> true | false
Int32Limits: 2147483647, -2147483648, 2147483648 -> int 2147483647 | int -2147483648 | double 2.14748e+09
MinusZero: -0, 0 -> double -0 | int 0
Doubles: 1.5, NaN, Infinity -> double 1.5 | double nan | double inf
BigIntLimits: 9223372036854775807n, -9223372036854775808n -> long 9223372036854775807 | long -9223372036854775808
Texts: '', 'a\0b\ud800\u20ac' -> '' | 'a<0>b<d800><20ac>'
Object: { b: 1, a: 'x', c: undefined, 10: 1, 9: 2 } -> {10: int 1, 9: int 2, a: 'x', b: int 1, c: empty}
OwnProtoKey: JSON.parse('{"__proto__": 1}') -> {__proto__: int 1}
NoPrototype: Object.assign(Object.create(null), { a: 1 }) -> {a: int 1}
PageClass: new (class extends (class { a = 1 }) { get b() { return 2 } c = 3 }) -> {a: int 1, c: int 3}
SymbolAndHiddenKeysDropped: Object.defineProperty({ [Symbol('s')]: 1, a: 2 }, 'hidden', { value: 3 }) -> {a: int 2}
GetterRunsOnce: (() => { let n = 0; return { get a() { return ++n } } })() -> {a: int 1}
Array: [1, , 'x', [true]] -> [int 1, empty, 'x', [true]]
SameObjectTwice: (() => { const o = { a: 1 }; return [o, o] })() -> [{a: int 1}, {a: int 1}]
SameObjectTwiceDeepDown: (() => { const o = { a: 1 }; return [[[[[[[[[[o, o]]]]]]]]]] })() -> [[[[[[[[[[{a: int 1}, {a: int 1}]]]]]]]]]]
Functions: () => 0, class { }, [async () => 0] -> function | function | [function]
NativeObject: NovaExtension.Probe -> native object
MoreThanFitOnTheStack: 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 -> int 1 | int 2 | int 3 | int 4 | int 5 | int 6 | int 7 | int 8 | int 9 | int 10
)js")),
    rowName);

class Refusals : public RowTest { };

TEST_P(Refusals, NameTheArgumentAndThePlace)
{
    const Outcome outcome = run(QStringLiteral(
        "const nest = (n, v = 0) => { for (; n > 0; --n) v = { a: v }; return v };"
        "const dag = () => { let v = []; for (let i = 0; i < 64; ++i) v = [v, v]; return v };"
        "let traps = 0; const handler = new Proxy({}, { get: () => () => { ++traps } });"
        "const p = NovaExtension.Probe; try { p.take(%1); return 'passed' } catch (e) {"
        "return [e instanceof Error, e.success, e.code, e.message === e.msg, traps, e.message] }")
                                    .arg(GetParam().given));
    ASSERT_TRUE(outcome.ok) << outcome.text;
    const bool passes = GetParam().expected == QLatin1String("passed");
    EXPECT_TRUE(passes || outcome.json.startsWith(QLatin1String("[true,false,1,true,0,"))) << outcome.json;
    EXPECT_TRUE(outcome.json.contains(GetParam().expected)) << outcome.json;
    EXPECT_EQ(taken, passes ? 1 : 0);
    EXPECT_EQ(core.liveCounts().functions, 0);
}

INSTANTIATE_TEST_SUITE_P(Values, Refusals, testing::ValuesIn(rows(R"js(
Symbol: 1, Symbol('x') -> argument 2: a symbol can not be passed
PathOfObjectAndArray: { a: { 'b c': [0, Symbol()] } } -> (at a[\"b c\"][1])
FunctionsBeforeItAreLetGo: () => 0, [() => 0, Symbol()] -> argument 2:
Proxy: new Proxy({}, handler) -> a proxy can not be passed
ProxyOfArray: [new Proxy([], handler)] -> a proxy can not be passed (at [0])
ProxyOfFunction: new Proxy(() => 0, handler) -> a proxy can not be passed
ProxyAsPrototype: Object.create(new Proxy({}, handler)) -> a proxy as its prototype
RevokedProxy: (() => { const r = Proxy.revocable({}, {}); r.revoke(); return r.proxy })() -> argument 1:
Map: { m: new Map } -> a Map can not be passed (at m)
SubclassOfMap: new (class extends Map { }) -> a Map can not be passed
ArticleBeforeAVowel: new AggregateError([]) -> an AggregateError can not be passed
WideBigInt: 9223372036854775808n -> a BigInt of more than 64 bits
NarrowBigInt: -9223372036854775809n -> a BigInt of more than 64 bits
GetterThrows: { get a() { throw new TypeError('oops') } } -> threw: TypeError: oops (at a)
GetterThrowsText: [{ get a() { throw 'why' } }] -> threw: why (at [0].a)
GetterThrowsWhatThrows: { get a() { throw { get msg() { throw 1 }, get code() { throw 2 } } } } -> reading it threw:
ElementThrows: Object.defineProperty([], 0, { get() { throw 'x' } }) -> threw: x (at [0])
GetterRecursesWithoutEnd: { get a() { const f = () => f(); f() } } -> threw: RangeError
GetterCallsItself: (() => { const o = { get a() { p.take(o) } }; return o })() -> RangeError
Cycle: (() => { const o = { a: {} }; o.a.b = o; return o })() -> a cycle can not be passed (at a.b)
DeepCycle: (() => { const o = {}; o.a = nest(50, o); return o })() -> a cycle
CycleOfArrays: (() => { const a = []; a.push(a); return a })() -> a cycle
DeepestNesting: nest(1000) -> passed
TooDeep: nest(1001) -> nested deeper than 1000
LongPathIsCut: nest(300, Symbol()) -> a.a.a.a...)
HugeSparseArray: new Array(4294967295) -> more than 1000000 values
ExponentialSharing: dag() -> more than 1000000 values
ManyValuesOverAll: new Array(600000).fill(0), new Array(600000).fill(0) -> argument 2: more than 1000000 values
Detached: (() => { const b = new ArrayBuffer(1); b.transfer(); return { a: new DataView(new ArrayBuffer(1)), b } })() -> a detached ArrayBuffer can not be passed (at b)
MuchBytes: new Uint8Array(1 << 27), new Uint8Array((1 << 27) + 1) -> argument 2: more than 256 MB of bytes
MuchText: 'x'.repeat(1 << 26), 'x'.repeat(1 << 27) -> argument 2: more than 256 MB of text
MostArguments: ...new Array(255).fill(0) -> passed
TooManyArguments: ...new Array(256).fill(0) -> more than 255 arguments
)js")),
    rowName);

class Logs : public RowTest { };

TEST_P(Logs, WhatItShould)
{
    run(GetParam().given);
    waitFor([&] { return log().size() >= GetParam().expected.size(); });
    EXPECT_EQ(log(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Console, Logs, testing::ValuesIn(rows(R"js(
Several: console.log('a b', 1, 'c', null, undefined) -> a b 1 c null undefined
Error: console.error(new TypeError('bad')) -> E TypeError: bad
Warning: console.warn([-0, 5n, 'x', Symbol('s')]) -> E [ -0, 5n, 'x', Symbol(s) ]
Collections: console.log(new Map([[1, { a: 2 }]]), new Set(['x'])) -> Map(1) { 1 => { a: 2 } } Set(1) { 'x' }
GetterIsNotRun: console.log({ get a() { throw 1 } }) -> { a: [Getter] }
HostileProxy: console.log(new Proxy({}, { getPrototypeOf() { throw 1 } })) -> [object that can not be shown]
NativeObject: console.log([NovaExtension.Probe], NovaExtension) -> [ [NovaExtension.Probe] ] NovaExtension { Broken, Probe }
ManyItems: console.log(new Array(1000).fill(7).length, new Array(1e9).length) -> 1000 1000000000
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Timers, Logs, testing::ValuesIn(rows(R"js(
ByTime: setTimeout(() => console.log('b'), 30); setTimeout(() => console.log('a'), 1) -> a|b
SameTimeInOrder: for (let i = 0; i < 4; ++i) setTimeout((n) => console.log(n), 5, i) -> 0|1|2|3
Cleared: const t = setTimeout(() => console.log('no'), 1); clearTimeout(t); clearTimeout(t); clearTimeout('x');
 setTimeout((a, b) => console.log(a, b), 10, 1, 2) -> 1 2
Once: setTimeout(() => console.log('once'), 0); await new Promise((r) => setTimeout(r, 40)) -> once
IntervalEndsItself: let n = 0; const t = setInterval(() => { console.log(++n); if (n === 3) clearInterval(t) }, 0);
 await new Promise((r) => setTimeout(r, 60)) -> 1|2|3
MicrotasksBeforeTimers: setTimeout(() => console.log('timer'), 0); queueMicrotask(() => console.log('task'));
 Promise.resolve().then(() => console.log('then')); console.log('now') -> now|task|then|timer
NoFunction: for (const f of [setTimeout, setInterval, queueMicrotask]) try { f('code') } catch (e) { console.log(e.name) } -> TypeError|TypeError|TypeError
TooMany: try { for (;;) setTimeout(() => 0, 1e9) } catch (e) { console.log(e.name) } -> RangeError
)js")),
    rowName);

class Uncaught : public RowTest { };

TEST_P(Uncaught, ReachesTheHostOnce)
{
    run("Object.defineProperty(globalThis, 'p', { get: () => NovaExtension.Probe })");
    run(GetParam().given);
    waitFor([&] { return !uncaught.empty(); });
    ASSERT_EQ(uncaught.size(), 1u);
    const Outcome& error = uncaught[0];
    const QString found =
        error.hasCode ? QStringLiteral("code %1 ").arg(error.code) + error.text : error.text;
    EXPECT_TRUE(found.startsWith(GetParam().expected)) << found;
}

INSTANTIATE_TEST_SUITE_P(Page, Uncaught, testing::ValuesIn(rows(R"js(
Timer: setTimeout(() => { throw new TypeError('t') }, 0) -> TypeError: t
Microtask: queueMicrotask(() => { throw new Error('m') }) -> m
Rejection: Promise.reject(Object.assign(new Error('r'), { code: 5 })) -> code 5 r
NativeCallsFunction: if (p.call(() => { throw new Error('f') }) !== 1) throw 'status' -> f
AnswerCanNotBePassed: p.call(() => Symbol()) -> the answer of a function: a symbol
EndlessNesting: let n = 0; const f = () => { ++n; try { return p.call(f) } catch (e) { if (n < 50) throw 'shallow'; throw e } };
 try { p.call(f) } catch { } -> RangeError: Maximum call stack
)js")),
    rowName);

class Repl : public RowTest { };

// All lines but the last prepare it.
TEST_P(Repl, Evaluates)
{
    QStringList lines = GetParam().given.split(QLatin1String(" ;; "));
    const QString last = lines.takeLast().trimmed();
    for (const QString& line : lines)
        EXPECT_TRUE(evaluate(line).ok) << line;
    expectShown(shown(evaluate(last)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Lines, Repl, testing::ValuesIn(rows(R"js(
Expression: 1 + 1 -> 2
DeclarationsStay: const a = 1; let b = 2 ;; function f() { return a + b } ;; f() -> 3
PromiseIsAwaited: Promise.resolve(3) -> 3
SyntaxError: 1 + -> !SyntaxError:
Throws: throw new TypeError('t') -> !TypeError: t
)js")),
    rowName);

class Completion : public RowTest { };

// A name that has to be there, and behind "!" one that must not.
TEST_P(Completion, NamesWithoutRunningThePage)
{
    evaluate(QStringLiteral(
        "globalThis.ran = 0; const local = { inner: { deep: 1 }, get getter() { ++ran; return { never: 1 } } "
        "};"
        "globalThis.proxy = new Proxy({ hidden: 1 }, { ownKeys() { ++ran; return [] }, get() { ++ran },"
        "getOwnPropertyDescriptor() { ++ran }, getPrototypeOf() { ++ran; return null } });"
        "Object.defineProperty(NovaExtension, 'fake', { get() { ++ran; return { never: 1 } } })"));
    QStringList names;
    page->propertyNames(GetParam().given.trimmed().split(QLatin1Char('.'), Qt::SkipEmptyParts),
        [&](const QStringList& found) { names = found; });
    const QString needed = GetParam().expected.section(QLatin1Char('!'), 0, 0).trimmed();
    EXPECT_TRUE(needed.isEmpty() || names.contains(needed)) << names.join(QLatin1Char(' '));
    EXPECT_FALSE(names.contains(GetParam().expected.section(QLatin1Char('!'), 1)));
    EXPECT_EQ(shown(evaluate(QStringLiteral("ran"))), QStringLiteral("0"));
}

INSTANTIATE_TEST_SUITE_P(Paths, Completion, testing::ValuesIn(rows(R"js(
Globals: -> NovaExtension !native
Nova: NovaExtension -> Probe !raw
UntouchedObject: NovaExtension.Probe -> raw !Probe
Inherited: NovaExtension.Probe -> hasOwnProperty !x
Unbound: NovaExtension.Broken -> !raw
Lexical: local.inner -> deep !inner
Getter: local.getter -> !never
GetterUnderNova: NovaExtension.fake -> !never
Proxy: proxy -> !hidden
Nothing: nothing.at.all -> !at
Primitive: process.argv.length -> toFixed !x
)js")),
    rowName);

class Tampering : public RowTest { };

// The page breaks its own world; what the engine makes and shows must not change.
TEST_P(Tampering, ChangesNothingOfTheEngine)
{
    run("globalThis.taken = 0; globalThis.steal = { __proto__: null, configurable: true,"
        "get() { ++taken; return () => 'stolen' }, set() { ++taken } };"
        "NovaExtension.Probe");
    run(GetParam().given);
    EXPECT_EQ(
        textOf(run("const p = NovaExtension.Probe, make = () => p.enveloped('list'); make(); make(); const x "
                   "= make();"
                   "return (x.success === true && x.data[19] === 19) + ' ' + taken")),
        QStringLiteral("true 0"));
    EXPECT_EQ(textOf(run("return NovaExtension.Probe.keys({ a: 1, b: [2] })")), QStringLiteral("a,b"));
    const Outcome failed = run("NovaExtension.Probe.fail()");
    EXPECT_TRUE(failed.text == QStringLiteral("no luck") && failed.code == 7) << failed.text;
    run("console.log('line', [1, { a: 2 }])");
    EXPECT_EQ(log(), QStringLiteral("line [ 1, { a: 2 } ]"));
    EXPECT_EQ(run("await null; return 5").text, QStringLiteral("5"));
    QStringList names;
    page->propertyNames({ QStringLiteral("NovaExtension"), QStringLiteral("Probe") },
        [&](const QStringList& found) { names = found; });
    EXPECT_FALSE(names.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Pages, Tampering, testing::ValuesIn(rows(R"js(
ObjectPrototypeSetters: for (const k of ['data', 'success', 'code', 'msg', 'value', 'a', 'get', 'next']) Object.defineProperty(Object.prototype, k, steal) ->
ArrayPrototypeSetters: for (let i = 0; i < 30; ++i) Object.defineProperty(Array.prototype, i, steal) ->
IndexedObjectPrototype: for (let i = 0; i < 30; ++i) Object.defineProperty(Object.prototype, i, steal) ->
TypedArraysAreBroken: const all = Object.getPrototypeOf(Int32Array.prototype);
 for (const k of ['length', 'buffer', 'at', 'valueOf', Symbol.iterator, Symbol.species])
    for (const o of [all, Int32Array.prototype]) Object.defineProperty(o, k, steal);
 globalThis.Int32Array = class { } ->
ArrayPrototypeIsEmpty: for (const k of Reflect.ownKeys(Array.prototype)) try { delete Array.prototype[k] } catch { } ->
GlobalsAreGone: const names = Reflect.ownKeys(globalThis), gone = Reflect.deleteProperty;
 for (const k of names) if (k !== 'NovaExtension' && k !== 'console' && k !== 'taken') gone(globalThis, k) ->
FunctionPrototypeIsBroken: Function.prototype.call = Function.prototype.apply = Function.prototype.bind = () => { throw 1 } ->
ArgumentsAreBroken: for (const k of ['length', 'callee', Symbol.iterator]) Object.defineProperty(Object.prototype, k, steal) ->
ObjectFunctionsAreBroken: for (const o of [Object, Reflect, JSON, Array, Number]) for (const k of Reflect.ownKeys(o)) try { o[k] = () => { throw 1 } } catch { } ->
PromiseIsBroken: Promise.prototype.then = Promise.prototype.catch = () => { throw 1 }; Promise.resolve = () => 0;
 Object.defineProperty(Promise, Symbol.species, { get() { throw 1 } }) ->
ErrorIsBroken: const E = Error; globalThis.Error = function () { throw 1 }; E.stackTraceLimit = 'x';
 Object.defineProperty(E, Symbol.hasInstance, { value() { throw 1 } }) ->
StringPrototypeIsBroken: for (const k of ['slice', 'startsWith', 'toString', 'valueOf']) String.prototype[k] = () => { throw 1 } ->
)js")),
    rowName);

} // namespace
