// Promises, event loops, events and collections: what takes more than one script.
#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

TEST_F(PageTest, PromisesSettleOnce)
{
    page->run(QStringLiteral("console.log(JSON.stringify(await NovaExtension.Probe.later()))"), {}, {});
    const std::vector<KJSVariant> list { KJSVariant::fromBool(true), makeText(QString()),
        KJSVariant::fromInt32(8) };
    IJSAnswerChannel* channel = GetVEXJSCore()->AnswerChannel();
    EXPECT_EQ(channel->Answer(pending, page->context(), list, 1), KR_OK);
    EXPECT_NE(channel->Answer(pending, page->context(), list, 1), KR_OK);
    EXPECT_EQ(log(), QStringLiteral("8")) << "microtasks run before the answer returns";
    EXPECT_EQ(core.liveCounts().promises, 0);
}

TEST_F(PageTest, SettledPromisesAndWrappersAreCollected)
{
    run("globalThis.all = []; const p = NovaExtension.Probe;"
        "for (let i = 0; i < 200; ++i) all.push(new WeakRef(p.settled()), new WeakRef(p.fresh()))");
    // Of itself, sooner or later.
    EXPECT_TRUE(waitFor([&] {
        run("for (let i = 0; i < 100000; ++i) ({})");
        return core.liveCounts().objects < 20;
    })) << "collected wrappers still hold their objects";
    engine->collectGarbage();
    // Some stay because a stale copy of their address happens to lie on the stack.
    EXPECT_LT(run("return all.filter((one) => one.deref()).length").text.toInt(), 40);
}

TEST_F(PageTest, WhatAPagePutsOnTheObjectOfAPropertyStays)
{
    run("NovaExtension.Probe.own = 1; NovaExtension.Probe.Child.own = 2; NovaExtension.Probe.Child.back = NovaExtension.Probe");
    for (int round = 0; round < 3; ++round) {
        run("for (let i = 0; i < 100000; ++i) ({})");
        engine->collectGarbage();
    }
    EXPECT_EQ(
        textOf(run("const p = NovaExtension.Probe; return [p.own, p.Child.own, p.Child.back === p].join()")),
        QStringLiteral("1,2,true"));
}

// Names are kept by the page from the second time on, all but long ones, and those of many objects displace
// each other.
TEST_F(PageTest, SameNamesAgainAndAgain)
{
    EXPECT_EQ(run("const p = NovaExtension.Probe; let wrong = 0;"
                  "for (let round = 0; round < 20; ++round) for (let i = 0; i < 600; ++i) {"
                  "const key = 'k' + i, long = 'x'.repeat(200) + i;"
                  "const text = p.see({ [key]: round, same: i, [long]: 1 });"
                  "if (text !== `{${key}: int ${round}, same: int ${i}, ${long}: int 1}`) ++wrong;"
                  "} return wrong")
                  .text,
        QStringLiteral("0"));
    engine->collectGarbage();
    EXPECT_EQ(textOf(run("return NovaExtension.Probe.see({ k1: 1, other: 2, k599: 3 })")),
        QStringLiteral("{k1: int 1, k599: int 3, other: int 2}"));
}

TEST_F(PageTest, NativeEventLoopStopsItsPageAndNoOther)
{
    method(u"spin", [&](ProbeCall&) {
        waitFor([&] { return lines.contains(QStringLiteral("other")); });
        letPass(20);
        return KR_OK;
    });
    const auto second = open();
    second->run(QStringLiteral("setTimeout(async () => { await null; console.log('other') }, 5)"), {}, {});
    run("setTimeout(() => console.log('own'), 5); NovaExtension.Probe.spin(); console.log('after')");
    EXPECT_TRUE(waitFor([&] { return lines.size() == 3; }));
    EXPECT_EQ(log(), QStringLiteral("other|after|own"));
}

TEST_F(PageTest, EventsReachBothPagesInTheirOwnWorlds)
{
    const auto second = open();
    for (Page* one : { page.get(), second.get() })
        run("NovaExtension.Probe.listen((x) => console.log(x.a, Object.getPrototypeOf(x) === "
            "Object.prototype))",
            one);
    run("NovaExtension.Probe.dispatch({ a: 1 })");
    EXPECT_EQ(log(), QStringLiteral("1 true|1 true"));
}

} // namespace
