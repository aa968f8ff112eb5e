// Documents of one page: who may call, and that what is one's own does not reach another.
#include "tests/web/fixture.h"

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

/// Says to the page around it what it has, whether it can load what is the application's, and what it gets when it writes requests by hand, in the name of every document
/// that may be there.
const QString Probing = QStringLiteral(R"js(<script src="nova://app/own.js"></script><script>
    const has = typeof NovaExtension === 'object' ? Object.getOwnPropertyNames(Object.getPrototypeOf(NovaExtension.Probe)) : 'none';
    const tried = [];
    for (const kind of ['C', 'B', 'P', 'T', 'R', 'E'])
        for (let frame = 0; frame < 400; ++frame) {
            const reply = prompt('nova', kind + frame + ';' + (kind === 'B' ? 'Probe' : '1;2;0;'));
            if (reply) tried.push(kind);
        }
    parent.postMessage(NAME + ': ' + has + '; ' + typeof own + '; ' + tried, '*');
    </script>)js");

TEST_F(WebTest, GivesADocumentWhatItsOriginMayHave)
{
    const auto probing = [](const QString& name) {
        return QString(Probing).replace(QStringLiteral("NAME"), QLatin1Char('\'') + name + QLatin1Char('\''));
    };
    for (const char* host : { "some", "stranger" })
        write(QString::fromLatin1(host), QStringLiteral("probe.html"), probing(QString::fromLatin1(host)));
    write(QStringLiteral("app"), QStringLiteral("own.js"), QStringLiteral("var own = ''"));
    write(QStringLiteral("app"), QStringLiteral("probe.html"), probing(QStringLiteral("sandboxed")));
    openPage(QStringLiteral(R"js(<script>
        NovaExtension.Probe.keep(() => 0);
        addEventListener('message', (event) => console.log(event.data));
        const frame = (attributes) => document.write('<iframe ' + attributes + '></iframe>');
        </script>
        <iframe src="nova://some/probe.html"></iframe>
        <iframe src="nova://stranger/probe.html"></iframe>
        <iframe src="probe.html" sandbox="allow-scripts allow-modals"></iframe>
        <iframe src="data:text/html;base64,%1"></iframe>)js")
                 .arg(QString::fromLatin1(probing(QStringLiteral("data")).toUtf8().toBase64())));
    ASSERT_TRUE(waitForLines(4));
    lines.sort();
    // What "some" gets is what it may have.
    EXPECT_EQ(log().toStdString(),
        "data: none; undefined; |sandboxed: none; undefined; |some: raw,later; string; C,B,P,T,R,E"
        "|stranger: none; string; ");
}

TEST_F(WebTest, ShowsImagesOfTheTheme)
{
    const QString trying = QStringLiteral(R"js(<script>
        const say = (text) => parent.postMessage(NAME + ' ' + text, '*');
        for (const host of ['have', 'none']) {
            const image = new Image();
            image.onerror = () => say(host + ' fails');
            image.onload = () => say(host + ' ' + image.naturalWidth);
            image.src = 'nova-skin://' + host + '/a?width=3';
        }
        </script>)js");
    for (const char* host : { "app", "stranger" })
        write(QString::fromLatin1(host), QStringLiteral("frame.html"),
            QString(trying).replace(QStringLiteral("NAME"), QStringLiteral("origin")));
    openPage(
        QStringLiteral(R"js(<script>addEventListener('message', (event) => console.log(event.data))</script>
        <iframe src="frame.html"></iframe><iframe src="nova://stranger/frame.html"></iframe>
        <iframe src="frame.html" sandbox="allow-scripts"></iframe>)js"));
    ASSERT_TRUE(waitForLines(6));
    lines.sort();
    EXPECT_EQ(log().toStdString(),
        "nova://app have 3|nova://app none fails|nova://stranger have 3|nova://stranger none fails"
        "|null have 3|null none fails");
}

/// A page can greet as often as it likes, as any number of documents.
TEST_F(WebTest, LeavesRoomForTheNextPage)
{
    write(QStringLiteral("app"), QStringLiteral("other.html"),
        QStringLiteral("<script>console.log(typeof NovaExtension)</script>"));
    openPage(QStringLiteral(
        "<script>for (let i = 0; i < 1100; ++i) prompt('nova', 'Hs'); location.href = 'other.html'</script>"));
    ASSERT_TRUE(waitForLines(1));
    EXPECT_EQ(log().toStdString(), "object");
}

/// Zeros are replaced by a unit that a text does not have: this one has all.
TEST_F(WebTest, CarriesTextsWithEveryUnit)
{
    openScript();
    const Outcome outcome = run(R"js(
        let all = '';
        for (let i = 0; i < 0x10000; ++i)
            all += String.fromCharCode(i);
        const p = NovaExtension.Probe;
        return [p.echo(all), p.full(all).data, p.keys({ [all]: 1 })].map((text) => text === all))js");
    EXPECT_EQ(shown(outcome).toStdString(), "[true,true,true]");
}

TEST_F(WebTest, WakesDocumentsInFrames)
{
    write(QStringLiteral("app"), QStringLiteral("frame.html"), QStringLiteral(R"js(<script>
        const p = NovaExtension.Probe;
        p.listen((x) => console.log('frame ' + x));
        p.settled().then((x) => console.log('settled ' + x));
        parent.begin(); </script>)js"));
    openPage(QStringLiteral(R"js(<script>
        const p = NovaExtension.Probe;
        p.listen((x) => { console.log('page ' + x); if (x === 3) throw new RangeError('three'); });
        var begin = () => setTimeout(() => { for (const x of [1, 2, 3]) setTimeout(() => p.dispatch(x), 20 * x); }, 20);
        </script><iframe src="frame.html"></iframe>)js"));
    ASSERT_TRUE(waitForLines(8)) << log().toStdString();
    const auto of = [this](const QString& who) { return lines.filter(who).join(QLatin1Char('|')); };
    EXPECT_EQ(of(QStringLiteral("page")).toStdString(), "page 1|page 2|page 3");
    EXPECT_EQ(
        of(QStringLiteral("Uncaught")).toStdString(), "Uncaught (in a listener of e) RangeError: three");
    EXPECT_EQ(of(QStringLiteral("frame")).toStdString(), "frame 1|frame 2|frame 3");
    EXPECT_EQ(of(QStringLiteral("settled")).toStdString(), "settled empty handle.");
}

/// The page stays when what it goes to is not shown, or when all that it loads is stopped; a frame stays when it does not get
/// round to what it is woken for.
TEST_F(WebTest, StaysWithItsDocument)
{
    write(QStringLiteral("app"), QStringLiteral("data.bin"), QString(1, QChar(0)));
    write(QStringLiteral("app"), QStringLiteral("frame.html"), QStringLiteral(R"js(<script>
        NovaExtension.Probe.listen((x) => console.log('frame heard ' + x));
        parent.NovaExtension.Probe.dispatch(6);
        for (const end = Date.now() + 4000; Date.now() < end;);
        setTimeout(() => parent.NovaExtension.Probe.dispatch(7), 1000); </script>)js"));
    openPage(QStringLiteral(R"js(<script>
        const p = NovaExtension.Probe;
        p.listen((x) => console.log('heard ' + x));
        </script><iframe src="frame.html"></iframe>)js"));
    ASSERT_TRUE(waitForLines(4));
    EXPECT_EQ(log().toStdString(), "heard 6|frame heard 6|heard 7|frame heard 7");
    lines.clear();
    openPage(QStringLiteral(R"js(<script>
        const p = NovaExtension.Probe;
        p.listen((x) => console.log('heard ' + x));
        stop();
        location.hash = 'there';
        history.pushState(0, '', 'elsewhere');
        location.href = 'data.bin';
        setTimeout(() => p.dispatch(7), 5000);
        </script>)js"));
    ASSERT_TRUE(waitForLines(1));
    EXPECT_EQ(log().toStdString(), "heard 7");
}

} // namespace
