// What is left of a page that ends, and what goes on.
#include "tests/jsc/fixture.h"

#include <thread>

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

/// The page is ended by its script: the host closes it, or destroys it in the rows of that name.
class Closing : public RowTest { };

TEST_P(Closing, EndsThePageAfterTheCall)
{
    const bool destroys = GetParam().name.rfind("Destroy", 0) == 0;
    method(u"close", [&](ProbeCall&) {
        destroys ? page.reset() : page->close();
        return KR_OK;
    });
    if (destroys)
        onExit = [&] { page.reset(); };
    bool answered = false;
    const QString common = QStringLiteral(
        "const p = NovaExtension.Probe, log = console.log; p.keep(() => log('called'));"
        "p.later().then(() => log('settled')); const child = p.Child; p.listen(() => log('heard'));"
        "setTimeout(() => log('timer'), 0); process.play('begun');"
        // Must not be called once the page ends; a row that lets time pass before sets `ends` when it does.
        "let ends = true; setInterval(() => { if (ends) log('interval') }, 0);");
    page->run(common + GetParam().given, {}, [&](const Outcome&) { answered = true; });
    waitFor([&] { return !core.liveCounts().pages; });

    const LiveCounts live = core.liveCounts();
    for (const auto& [what, count] : { std::pair("pages", live.pages), std::pair("objects", live.objects),
             std::pair("listeners", live.listeners), std::pair("promises", live.promises),
             std::pair("functions", live.functions) })
        EXPECT_EQ(count, 0) << what;
    EXPECT_TRUE(playing.expired()) << "plays outlive their page";
    EXPECT_EQ(played, QStringList(QStringLiteral("begun")));
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->Call({}, nullptr), KR_NOT_AVAILABLE);
    letPass(20);
    EXPECT_EQ(log(), GetParam().expected);
    EXPECT_FALSE(answered);
    EXPECT_TRUE(uncaught.empty());
    if (page) {
        page->run(QStringLiteral("1"), {}, [&](const Outcome&) { answered = true; });
        page->propertyNames({}, [](const QStringList& names) { EXPECT_TRUE(names.isEmpty()); });
    }
}

INSTANTIATE_TEST_SUITE_P(Page, Closing, testing::ValuesIn(rows(R"js(
Exit: exit(3); process.play('late'); log('same call') -> same call
ExitBeforeAwait: exit(3); await null; log('no') ->
ExitAfterQueueing: queueMicrotask(() => log('no')); exit(3) ->
ExitAfterAwait: await null; exit(3); await null; await null; log('no') ->
ExitInGetter: p.take({ get a() { exit(1); return 1 } }); log('after') -> after
ExitInListener: p.listen(() => exit(1)); p.dispatch(); log('after') -> heard|after
ExitInTimer: ends = false; setTimeout(() => { ends = true; exit(0); log('last') }, 0); await new Promise(() => 0) -> timer|last
CloseInCall: p.close(); p.take(child); log('still here') -> still here
DestroyInCall: p.close(); p.take(child); log('host has gone') ->
DestroyInExit: ends = false; setTimeout(() => { ends = true; exit(0); log('host has gone') }, 0); await new Promise(() => 0) -> timer
RejectionAfterExit: exit(0); Promise.reject(new Error('late')) ->
)js")),
    rowName);

TEST_F(PageTest, ExitTellsItsCodeOnce)
{
    page->run(QStringLiteral("exit(4); exit(5)"), {}, {});
    EXPECT_EQ(exits, std::vector<int> { 4 });
}

TEST_F(PageTest, AnotherPageGoesOnWhenOneIsClosedInItsCall)
{
    auto second = open();
    method(u"closeOther", [&](ProbeCall&) {
        second->close();
        return KR_OK;
    });
    run("NovaExtension.Probe; globalThis.f = () => 1", second.get());
    EXPECT_EQ(shown(run("NovaExtension.Probe.closeOther(); return 'on'")), QStringLiteral("\"on\""));
    EXPECT_EQ(core.liveCounts().pages, 1);
}

TEST_F(PageTest, FunctionOutlivesThePageTheEngineAndTheCore)
{
    run("NovaExtension.Probe.keep(() => 1)");
    EXPECT_EQ(core.liveCounts().functions, 1);
    page.reset();
    engine.reset();
    EXPECT_EQ(core.liveCounts().functions, 0);
    Core::stop();
    EXPECT_EQ(kept->Call({}, nullptr), KR_NOT_AVAILABLE);
}

TEST_F(PageTest, LastReferenceMayGoOnAnotherThread)
{
    run("NovaExtension.Probe.keep(() => 1)");
    std::thread([&] { kept = {}; }).join();
    EXPECT_TRUE(waitFor([&] { return core.liveCounts().functions == 0; }));
}

} // namespace
