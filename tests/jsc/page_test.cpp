#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

struct RunCase {
    const char* name;
    const char* script;
    const char* shown;     ///< the answer as JSON or its text, or "!" and a part of the error
    const char* stackPart; ///< of the error's stack
};

class Runs : public PageTest, public testing::WithParamInterface<RunCase> { };

TEST_P(Runs, Answer)
{
    const Outcome outcome = run(GetParam().script);
    const QString expected = QString::fromUtf8(GetParam().shown);
    if (expected.startsWith(QLatin1Char('!')))
        EXPECT_TRUE(shown(outcome).startsWith(expected)) << shown(outcome);
    else
        EXPECT_EQ(shown(outcome), expected);
    EXPECT_TRUE(outcome.stack.contains(QLatin1String(GetParam().stackPart))) << outcome.stack;
}

INSTANTIATE_TEST_SUITE_P(Page, Runs,
    testing::Values(RunCase { "Value", "return { a: [1, 'x', null] }", "{\"a\":[1,\"x\",null]}", "" },
        RunCase { "Nothing", "", "undefined", "" },
        RunCase { "AwaitAtTop", "const x = await Promise.resolve(2); return x + 1", "3", "" },
        RunCase { "PromiseAnswer", "return Promise.resolve(4)", "4", "" },
        RunCase {
            "BigIntAsLiteral", "return { n: 12345678901234567890n }", "{\"n\":12345678901234567890}", "" },
        RunCase {
            "CycleHasText", "const o = { a: 1 }; o.self = o; return o", "{ a: 1, self: [Circular] }", "" },
        RunCase { "FunctionHasText", "return function f() { }", "[Function: f]", "" },
        RunCase { "Throws", "\n\nnull.x", "!TypeError: null is not an object", "test.js:3" },
        RunCase { "ThrowsText", "throw 'x'", "!x", "" },
        RunCase { "ThrowsHostile", "throw { get msg() { throw 1 }, toString() { throw 2 } }", "!", "" },
        RunCase { "SyntaxError", "\nlet = = 1", "!SyntaxError: ", "test.js:2" },
        RunCase { "ClosesItsFunction", "}); console.log('out'); (async () => {", "!SyntaxError: ", "" },
        RunCase { "ClosesAMethod", "}, async other() {", "!SyntaxError: ", "" },
        RunCase { "ExitByText", "exit('x')", "!TypeError: exit: the code", "test.js:1" },
        RunCase { "ExitBeyondAByte", "exit(256)", "!TypeError: exit: the code", "test.js:1" },
        RunCase { "EndlessRecursion", "const f = () => f(); f()", "!RangeError: ", "" },
        RunCase { "LastLineComment", "return 1 // end", "1", "" },
        RunCase { "Hashbang", "#!/bin/x\nreturn 1", "1", "" },
        RunCase { "ProcessArguments", "return process.argv", "[\"page.js\",\"-x\"]", "" },
        RunCase { "NoHostNames", "return Object.keys(globalThis)", "[]", "" }),
    caseName<RunCase>);

struct ConsoleCase {
    const char* name;
    const char* script;
    const char* line;
};

class Console : public PageTest, public testing::WithParamInterface<ConsoleCase> { };

TEST_P(Console, Prints)
{
    run(GetParam().script);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0].section(QLatin1Char('\n'), 0, 0), QString::fromUtf8(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(Page, Console,
    testing::Values(
        ConsoleCase { "Several", "console.log('a b', 1, 'c', null, undefined)", "a b 1 c null undefined" },
        ConsoleCase { "Error", "console.error(new TypeError('bad'))", "E TypeError: bad" },
        ConsoleCase { "Warning", "console.warn([-0, 5n, 'x', Symbol('s')])", "E [-0, 5n, \"x\", Symbol(s)]" },
        ConsoleCase { "Collections", "console.log(new Map([[1, { a: 2 }]]), new Set(['x']))",
            "Map { 1 => { a: 2 } } Set { \"x\" }" },
        ConsoleCase { "GetterIsNotRun", "console.log({ get a() { throw 1 } })", "{ a: [Getter] }" },
        ConsoleCase { "HostileProxy", "console.log(new Proxy({}, { getPrototypeOf() { throw 1 } }))",
            "[object that can not be shown]" },
        ConsoleCase { "NativeObject", "console.log(NovaExtension.Probe)", "[object NovaExtension.Probe]" },
        ConsoleCase { "ManyItems", "console.log(new Array(1000).fill(7).length, new Array(1e9).length)",
            "1000 1000000000" }),
    caseName<ConsoleCase>);

struct TimerCase {
    const char* name;
    const char* script; ///< logs
    const char* lines;
};

class TimersAndTasks : public PageTest, public testing::WithParamInterface<TimerCase> { };

TEST_P(TimersAndTasks, RunInOrder)
{
    run(GetParam().script);
    const QString expected = QString::fromLatin1(GetParam().lines);
    waitFor([&] { return lines.join(QLatin1Char(' ')) == expected; });
    EXPECT_EQ(lines.join(QLatin1Char(' ')), expected);
}

INSTANTIATE_TEST_SUITE_P(Page, TimersAndTasks,
    testing::Values(
        TimerCase { "ByTime", "setTimeout(() => console.log('b'), 30); setTimeout(() => console.log('a'), 1)",
            "a b" },
        TimerCase { "SameTimeInOrder", "for (let i = 0; i < 4; ++i) setTimeout((n) => console.log(n), 5, i)",
            "0 1 2 3" },
        TimerCase { "Cleared",
            "const t = setTimeout(() => console.log('no'), 1); clearTimeout(t); clearTimeout(t); "
            "clearTimeout('x');"
            "setTimeout((a, b) => console.log(a, b), 10, 1, 2)",
            "1 2" },
        TimerCase { "IntervalEndsItself",
            "let n = 0; const t = setInterval(() => { console.log(++n); if (n === 3) clearInterval(t) }, 0);"
            "await new Promise((r) => setTimeout(r, 60))",
            "1 2 3" },
        TimerCase { "MicrotasksBeforeTimers",
            "setTimeout(() => console.log('timer'), 0); queueMicrotask(() => console.log('task'));"
            "Promise.resolve().then(() => console.log('then')); console.log('now')",
            "now task then timer" },
        TimerCase { "NoFunction",
            "for (const f of [setTimeout, setInterval, queueMicrotask])"
            "try { f('code') } catch (e) { console.log(e.name) }",
            "TypeError TypeError TypeError" },
        TimerCase { "TooMany", "try { for (;;) setTimeout(() => 0, 1e9) } catch (e) { console.log(e.name) }",
            "RangeError" }),
    caseName<TimerCase>);

struct UncaughtCase {
    const char* name;
    const char* script;
    const char* text;
    bool hasCode;
};

class Uncaught : public PageTest, public testing::WithParamInterface<UncaughtCase> { };

TEST_P(Uncaught, ReachesTheHostOnce)
{
    method(u"call", [](ProbeCall& call) {
        void* function = nullptr;
        call.arguments[0].raw().punkVal->QueryInterface(IID_IJSFunction, &function);
        const auto held = Ref<IJSFunction>::adopt(static_cast<IJSFunction*>(function));
        KJSVariant answer;
        const KJSVariant argument = text("a");
        const KResult status = held->Call(JSApiArguments(&argument, 1), &answer);
        call.result = status == KR_OK ? answer : KJSVariant::fromInt32(static_cast<std::int32_t>(status));
        return KR_OK;
    });
    run(GetParam().script);
    waitFor([&] { return !uncaught.empty(); });
    ASSERT_EQ(uncaught.size(), 1u);
    EXPECT_TRUE(uncaught[0].text.startsWith(QString::fromLatin1(GetParam().text))) << uncaught[0].text;
    EXPECT_EQ(uncaught[0].hasCode, GetParam().hasCode);
}

INSTANTIATE_TEST_SUITE_P(Page, Uncaught,
    testing::Values(
        UncaughtCase { "Timer", "setTimeout(() => { throw new TypeError('t') }, 0)", "TypeError: t", false },
        UncaughtCase { "Microtask", "queueMicrotask(() => { throw new Error('m') })", "m", false },
        UncaughtCase { "Rejection", "Promise.reject(Object.assign(new Error('r'), { code: 5 }))", "r", true },
        UncaughtCase { "NativeCallsFunction",
            "if (NovaExtension.Probe.call(() => { throw new Error('f') }) !== 1) throw 'status'", "f",
            false },
        UncaughtCase { "AnswerCanNotBePassed", "NovaExtension.Probe.call(() => Symbol())",
            "the answer of a function: a symbol", false },
        UncaughtCase { "EndlessNesting",
            "const p = NovaExtension.Probe; let n = 0;"
            "const f = () => { ++n; try { return p.call(f) } catch (e) { if (n < 50) throw 'shallow'; throw "
            "e } };"
            "try { p.call(f) } catch { }",
            "RangeError: Maximum call stack", false }),
    caseName<UncaughtCase>);

TEST_F(PageTest, FunctionAnswersNativeCode)
{
    method(u"call", [](ProbeCall& call) {
        void* function = nullptr;
        call.arguments[0].raw().punkVal->QueryInterface(IID_IJSFunction, &function);
        const auto held = Ref<IJSFunction>::adopt(static_cast<IJSFunction*>(function));
        const std::vector<KJSVariant> many(static_cast<std::size_t>(call.arguments[1].raw().lVal), text("x"));
        return held->Call(JSApiArguments(many.data(), many.size()), &call.result);
    });
    EXPECT_EQ(answer("const f = (...all) => all.length; const p = NovaExtension.Probe;"
                     "return [p.call(f, 0), p.call(f, 16), p.call(f, 17), p.call(f, 300)]"),
        QStringLiteral("[0,16,17,300]"));
}

TEST_F(PageTest, PromisesSettleOnceWithValueOrError)
{
    IJSPromiseService* service = GetVEXJSCore()->PromiseService();
    std::int64_t pending = 0;
    method(u"later", [&](ProbeCall& call) {
        pending = service->CreatePending(call.context, call.result);
        return KR_OK;
    });
    method(u"refused", [&](ProbeCall& call) {
        return service->CreateSettled(
            JSPromiseState::Rejected, call.context, [](KJSVariant& value) { value = text("empty handle."); },
            call.result);
    });
    page->run(QStringLiteral("console.log(JSON.stringify(await NovaExtension.Probe.later()))"), {}, {});
    const std::vector<KJSVariant> list { KJSVariant::fromBool(true), text(""), KJSVariant::fromInt32(8) };
    IJSAnswerChannel* channel = GetVEXJSCore()->AnswerChannel();
    EXPECT_EQ(channel->Answer(pending, page->context(), list, 1), KR_OK);
    EXPECT_NE(channel->Answer(pending, page->context(), list, 1), KR_OK);
    EXPECT_EQ(lines, QStringList { QStringLiteral("8") }) << "microtasks run before the answer returns";
    EXPECT_EQ(
        answer("const p = NovaExtension.Probe.refused(); if (!(p instanceof Promise)) return 'no promise';"
               "try { await p } catch (e) { return [e instanceof Error, e.msg, e.success] }"),
        QStringLiteral("[true,\"empty handle.\",false]"));
    EXPECT_EQ(core.liveCounts().promises, 0);
}

TEST_F(PageTest, SettledPromisesAreCollected)
{
    method(u"settled", [](ProbeCall& call) {
        return GetVEXJSCore()->PromiseService()->CreateSettled(
            JSPromiseState::Resolved, call.context, [](KJSVariant&) {}, call.result);
    });
    run("globalThis.all = []; for (let i = 0; i < 200; ++i) all.push(new "
        "WeakRef(NovaExtension.Probe.settled()))");
    engine->collectGarbage();
    // Some stay because a stale copy of their address happens to lie on the stack.
    EXPECT_LT(run("return all.filter((one) => one.deref()).length").text.toInt(), 20);
}

TEST_F(PageTest, MicrotasksWaitForTheCallInProgress)
{
    method(u"call", [](ProbeCall& call) {
        void* function = nullptr;
        call.arguments[0].raw().punkVal->QueryInterface(IID_IJSFunction, &function);
        return Ref<IJSFunction>::adopt(static_cast<IJSFunction*>(function))->Call({}, nullptr);
    });
    EXPECT_EQ(
        answer("const seen = []; NovaExtension.Probe.call(() => { queueMicrotask(() => seen.push('task')) });"
               "seen.push('after'); await null; return seen"),
        QStringLiteral("[\"after\",\"task\"]"));
}

TEST_F(PageTest, NativeEventLoopStopsItsPageAndNoOther)
{
    method(u"spin", [](ProbeCall&) {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 50)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return KR_OK;
    });
    const auto second = open();
    second->run(QStringLiteral("setTimeout(async () => { await null; console.log('other') }, 5)"), {}, {});
    run("setTimeout(() => console.log('own'), 5); NovaExtension.Probe.spin(); console.log('after')");
    EXPECT_TRUE(waitFor([&] { return lines.size() == 3; }));
    EXPECT_EQ(lines.join(QLatin1Char(' ')), QStringLiteral("other after own"));
}

TEST_F(PageTest, EventsReachBothPagesInTheirOwnWorlds)
{
    IJSEventHub* hub = GetVEXJSCore()->EventHubs()->ClassHub(1);
    method(u"listen",
        [hub](ProbeCall& call) { return hub->Add(QStringLiteral("e"), call.context, call.arguments[0]); });
    method(u"dispatch", [hub](ProbeCall& call) {
        return hub->Dispatch(QStringLiteral("e"), JSContextEnv::everyContext(), { call.arguments[0] });
    });
    const auto second = open();
    const char* listen =
        "NovaExtension.Probe.listen((x) => console.log(x.a, Object.getPrototypeOf(x) === Object.prototype))";
    run(listen);
    run(listen, second.get());
    run("NovaExtension.Probe.dispatch({ a: 1 })");
    EXPECT_EQ(lines, (QStringList { QStringLiteral("1 true"), QStringLiteral("1 true") }));
}

} // namespace
