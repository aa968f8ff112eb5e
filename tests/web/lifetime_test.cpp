// Views, pages and renderers that go, at every point of a call.
#include "tests/web/fixture.h"

#include <QDir>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <csignal>
#include <unistd.h>

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

/// Those that this process has started, by way of others, and none else of this machine. Returns how many.
int killRenderers()
{
    const auto read = [](const QString& process, const char* name) {
        QFile file(QStringLiteral("/proc/%1/%2").arg(process, QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const auto parentOf = [&](const QString& process) {
        const QByteArray stat = read(process, "stat");
        return QString::fromLatin1(stat.mid(stat.lastIndexOf(')')).split(' ').value(2));
    };
    const QString own = QString::number(getpid());
    int count = 0;
    for (const QString& process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        // Renderers are copies of a process that is called so.
        if (process.toInt() == 0 || !read(parentOf(process), "cmdline").contains("--type=zygote"))
            continue;
        QString ancestor = process;
        while (ancestor.toInt() > 1 && ancestor != own)
            ancestor = parentOf(ancestor);
        count += ancestor == own && kill(process.toInt(), SIGKILL) == 0;
    }
    return count;
}

class Lifetime : public WebTest, public testing::WithParamInterface<Row> {
protected:
    /// What the members "end" and "endWithin" do, by their first argument.
    void end(const QString& what)
    {
        if (what == QLatin1String("view")) {
            view.reset();
        } else if (what == QLatin1String("page")) {
            page.reset();
        } else if (what == QLatin1String("close")) {
            page->close();
        } else if (what == QLatin1String("load")) {
            view->load(QUrl(QStringLiteral("nova://stranger/other.html")));
        } else if (what == QLatin1String("widget")) {
            delete view->widget()->parentWidget();
        } else if (what == QLatin1String("renderer")) {
            EXPECT_GT(killRenderers(), 0);
        }
    }

    void SetUp() override
    {
        // It has nothing itself.
        write(QStringLiteral("stranger"), QStringLiteral("other.html"), QStringLiteral("other"));
        const auto textOf = [](const KJSVariant& value) { return vexlite::textOf(value); };
        method(u"end", [this, textOf](ProbeCall& call) {
            end(textOf(call.arguments[0]));
            return KR_OK;
        });
        // The event loop runs in the call, and ends what is to end from there.
        method(u"endWithin", [this, textOf](ProbeCall& call) {
            const QString what = textOf(call.arguments[0]);
            QEventLoop loop;
            QTimer::singleShot(0, &loop, [&] { end(what); });
            constexpr int WhileMs = 50;
            QTimer::singleShot(WhileMs, &loop, &QEventLoop::quit);
            loop.exec();
            return KR_OK;
        });
    }
};

TEST_P(Lifetime, EndsAnywhere)
{
    QWidget window;
    openScript();
    if (GetParam().given.contains(QStringLiteral("'widget'"))) {
        auto* holder = new QWidget(&window);
        view->widget()->setParent(holder);
        window.show();
    }
    page->run(QStringLiteral("const p = NovaExtension.Probe; p.keep(() => 0); p.listen(() => p.end('view'));"
                             "p.later().then(() => 0); const child = p.Child;")
            + GetParam().given,
        QStringLiteral("test.js"), [&](const Outcome&) {});
    // Before that there is nothing yet.
    ASSERT_TRUE(waitFor([&] { return bool(kept); }));
    expectNothingLeft();
    EXPECT_EQ(kept->Call({}, nullptr), KR_NOT_AVAILABLE);
    // The browser goes on.
    view.reset();
    openScript();
    EXPECT_EQ(
        shown(run("NovaExtension.Probe.raw(); return await NovaExtension.Probe.settled()")).toStdString(),
        "\"empty handle.\"");
}

INSTANTIATE_TEST_SUITE_P(Web, Lifetime, testing::ValuesIn(rows(R"js(
ViewInCall: p.end('view'); p.raw() ->
PageInCall: p.end('page') ->
CloseInCall: p.end('close') ->
LoadInCall: p.end('load') ->
RendererInCall: p.end('renderer') ->
ViewInGetter: p.take({ get a() { p.end('view'); return 1 } }) ->
ViewInListener: p.dispatch() ->
ViewInPromise: p.settled().then(() => p.end('view')) ->
ViewInTimer: setTimeout(() => p.end('view'), 0) ->
ViewInLoop: p.endWithin('view'); p.raw() ->
PageInLoop: p.endWithin('page') ->
LoadInLoop: p.endWithin('load') ->
RendererInLoop: p.endWithin('renderer') ->
WidgetInLoop: p.endWithin('widget') ->
Exit: exit(3); p.raw() ->
Leaves: location.href = 'nova://stranger/other.html' ->
)js")),
    rowName);

/// A page waits for a dialog, and goes meanwhile in some rows; the page of another view goes on.
class Waiting : public WebTest, public testing::WithParamInterface<Row> { };

TEST_P(Waiting, LeavesOtherPagesAlone)
{
    std::unique_ptr<View> waiting;
    bool hasEnded = false;
    const auto letPass = [this] { run("await new Promise((done) => setTimeout(done, 50))"); };
    method(u"getOpenFileName", [&](ProbeCall& call) {
        waiting = std::move(view);
        openScript();
        const Outcome other =
            run("const p = NovaExtension.Probe; p.dispatch(1, 2); return [p.raw(), await p.settled()]");
        EXPECT_EQ(shown(other).toStdString(), R"([1,"empty handle."])");
        if (GetParam().given.trimmed() == QLatin1String("destroy"))
            waiting.reset();
        letPass();
        call.result = makeText(QStringLiteral("chosen"));
        hasEnded = true;
        return KR_OK;
    });
    core.setFactories(
        { { QStringLiteral("Probe"), bindProbe }, { QStringLiteral("FileSystem"), bindProbe } });
    openPage(QStringLiteral(R"js(<script>
        const p = NovaExtension.FileSystem;
        p.listen((x) => console.log('heard ' + x));
        setTimeout(() => console.log(p.getOpenFileName()), 0);
        </script>)js"));
    ASSERT_TRUE(waitFor([&] { return hasEnded; }));
    waitForLines(GetParam().expected.split(QLatin1Char('|'), Qt::SkipEmptyParts).size());
    letPass();
    EXPECT_EQ(log().toStdString(), GetParam().expected.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Web, Waiting, testing::ValuesIn(rows(R"js(
Ends: stay -> heard 1|chosen
ViewGoes: destroy ->
)js")),
    rowName);

TEST_F(WebTest, CallsAnyNumberOfFunctionsThatMakeCalls)
{
    openScript();
    const char* const script = "const p = NovaExtension.Probe, heard = [];"
                               "for (let i = 0; i < 5000; ++i) p.listen(() => { heard.push(i); p.raw() });"
                               "p.dispatch(); return heard.length + ' ' + heard.every((i, at) => i === at)";
    EXPECT_EQ(shown(run(script)).toStdString(), "\"5000 true\"");
}

TEST_F(WebTest, ReleasesTheObjectsThatAPageLetsGo)
{
    openScript();
    run("globalThis.kept = NovaExtension.Probe.fresh(); for (let i = 0; i < 200; ++i) NovaExtension.Probe.fresh()");
    EXPECT_TRUE(waitFor([&] {
        run("new Uint8Array(1 << 26).fill(1)"); // garbage, which has the browser collect it sooner or later
        return core.liveCounts().objects < 20;
    })) << core.liveCounts().objects;
    EXPECT_TRUE(run("NovaExtension.Probe.take(kept)").ok) << "one that is still there";
}

/// Every reload comes while calls, promises and listeners are under way.
TEST_F(WebTest, LeavesNothingWhenItIsReloadedAThousandTimes)
{
    openPage(QStringLiteral(R"js(<script>
        const n = +(sessionStorage.n || 0) + 1;
        sessionStorage.n = n;
        const p = NovaExtension.Probe;
        p.listen(() => 0), p.keep(() => 0), p.later().then(() => console.log('settled'));
        const child = p.Child, more = p.fresh();
        if (n % 100 === 0)
            console.log(n);
        if (n < 1000) {
            setTimeout(() => { location.reload(); for (let i = 0; i < 20; ++i) p.settled(), p.dispatch(); }, n % 3);
        }
        </script>)js"));
    for (int hundreds = 1; hundreds <= 10; ++hundreds)
        ASSERT_TRUE(waitForLines(hundreds)) << log().toStdString();
    EXPECT_TRUE(waitFor([&] { return core.liveCounts().pages == 1; }));
    const LiveCounts live = core.liveCounts();
    EXPECT_EQ(std::tuple(live.objects, live.listeners, live.promises), std::tuple(3, 1, 1));
    EXPECT_LE(liveProbes(), 4);
}

} // namespace
