#include "tests/jsc/fixture.h"

#include <thread>

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

Ref<IJSFunction> functionOf(const KJSVariant& value)
{
    void* function = nullptr;
    value.raw().punkVal->QueryInterface(IID_IJSFunction, &function);
    return Ref<IJSFunction>::adopt(static_cast<IJSFunction*>(function));
}

struct CloseCase {
    const char* name;
    const char* script; ///< closes the page somewhere
    const char* lines;  ///< all that the console sees
    bool destroys;      ///< the host destroys the page instead of closing it
};

class Closing : public PageTest, public testing::WithParamInterface<CloseCase> { };

TEST_P(Closing, EndsThePageAfterTheCall)
{
    IJSEventHub* hub = GetVEXJSCore()->EventHubs()->ClassHub(1);
    std::vector<Ref<IJSFunction>> kept;
    method(u"listen",
        [&](ProbeCall& call) { return hub->Add(QStringLiteral("e"), call.context, call.arguments[0]); });
    method(
        u"dispatch", [&](ProbeCall& call) { return hub->Dispatch(QStringLiteral("e"), call.context, {}); });
    method(u"keep", [&](ProbeCall& call) {
        kept.push_back(functionOf(call.arguments[0]));
        return KR_OK;
    });
    method(u"later", [&](ProbeCall& call) {
        GetVEXJSCore()->PromiseService()->CreatePending(call.context, call.result);
        return KR_OK;
    });
    method(u"child", [](ProbeCall& call) {
        call.result = KJSVariant::fromUnknown(
            new SubObject(Ref<IJSExtentionObject>::adopt(new Probe(2, { { u"x", 0, {} } }))));
        return KR_OK;
    });
    method(u"take", [](ProbeCall&) { return KR_OK; });
    method(u"close", [&](ProbeCall&) {
        if (GetParam().destroys)
            page.reset();
        else
            page->close();
        return KR_OK;
    });
    onExit = [&] {
        if (GetParam().destroys)
            page.reset();
    };
    bool answered = false;
    const QString common = QStringLiteral(
        "const p = NovaExtension.Probe, log = console.log; p.keep(() => log('called'));"
        "p.later().then(() => log('settled')); const child = p.child(); p.listen(() => log('heard'));"
        "setTimeout(() => log('timer'), 0); setInterval(() => log('interval'), 0); process.play('begun');");
    page->run(common + QString::fromUtf8(GetParam().script), {}, [&](const Outcome&) { answered = true; });
    waitFor([&] { return !core.liveCounts().pages; });

    const LiveCounts live = core.liveCounts();
    EXPECT_TRUE(live.pages == 0 && live.objects == 0 && live.listeners == 0 && live.promises == 0
        && live.functions == 0)
        << live.pages << ' ' << live.objects << ' ' << live.listeners << ' ' << live.promises << ' '
        << live.functions;
    EXPECT_EQ(Probe::alive, 0) << "native objects outlive their page";
    EXPECT_TRUE(playing.expired()) << "plays outlive their page";
    EXPECT_EQ(played, QStringList(QStringLiteral("begun")));
    ASSERT_FALSE(kept.empty());
    EXPECT_EQ(kept[0]->Call({}, nullptr), KR_NOT_AVAILABLE);
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 20)
        QCoreApplication::processEvents();
    EXPECT_EQ(lines.join(QLatin1Char(' ')), QString::fromLatin1(GetParam().lines));
    EXPECT_FALSE(answered);
    EXPECT_TRUE(uncaught.empty());
    if (page) {
        page->run(QStringLiteral("1"), {}, [&](const Outcome&) { answered = true; });
        EXPECT_TRUE(page->propertyNames(QString()).isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(Page, Closing,
    testing::Values(
        CloseCase { "Exit", "exit(3); process.play('late'); log('same call')", "same call", false },
        CloseCase { "ExitBeforeAwait", "exit(3); await null; log('no')", "", false },
        CloseCase { "ExitAfterQueueing", "queueMicrotask(() => log('no')); exit(3)", "", false },
        CloseCase { "ExitAfterAwait", "await null; exit(3); await null; await null; log('no')", "", false },
        CloseCase {
            "ExitInGetter", "p.take({ get a() { exit(1); return 1 } }); log('after')", "after", false },
        CloseCase {
            "ExitInListener", "p.listen(() => exit(1)); p.dispatch(); log('after')", "heard after", false },
        CloseCase { "ExitInTimer",
            "setTimeout(() => { exit(0); log('last') }, 0); await new Promise(() => 0)", "timer last",
            false },
        CloseCase { "CloseInCall", "p.close(); p.take(child); log('still here')", "still here", false },
        CloseCase { "DestroyInCall", "p.close(); p.take(child); log('host has gone')", "", true },
        CloseCase { "DestroyInExit",
            "setTimeout(() => { exit(0); log('host has gone') }, 0); await new Promise(() => 0)", "timer",
            true },
        CloseCase { "RejectionAfterExit", "exit(0); Promise.reject(new Error('late'))", "", false }),
    caseName<CloseCase>);

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
    EXPECT_EQ(answer("NovaExtension.Probe.closeOther(); return 'on'"), QStringLiteral("\"on\""));
    EXPECT_EQ(core.liveCounts().pages, 1);
}

TEST_F(PageTest, FunctionOutlivesThePageTheEngineAndTheCore)
{
    Ref<IJSFunction> kept;
    method(u"keep", [&](ProbeCall& call) {
        kept = functionOf(call.arguments[0]);
        return KR_OK;
    });
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
    Ref<IJSFunction> kept;
    method(u"keep", [&](ProbeCall& call) {
        kept = functionOf(call.arguments[0]);
        return KR_OK;
    });
    run("NovaExtension.Probe.keep(() => 1)");
    std::thread([&] { kept = {}; }).join();
    EXPECT_TRUE(waitFor([&] { return core.liveCounts().functions == 0; }));
}

} // namespace
