#include "tests/web/fixture.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QWidget>
#include <unistd.h>

namespace engine::test {

namespace {

constexpr int Width = 400;

} // namespace

WebEngine& WebTest::webEngine()
{
    static QLibrary library(QStringLiteral(NOVAWEB));
    static WebEngine* made = [] {
        const auto make = reinterpret_cast<MakeWebEngine>(library.resolve(MakeWebEngineName));
        if (!make)
            qFatal("%s", qPrintable(library.errorString()));
        WebEngineHost host;
        host.browser = [](const QString& viewId) {
            vexlite::BrowserFacts facts;
            facts.browserId = viewId;
            return facts;
        };
        // Pages of "app" have everything, those of "some" two members, all others nothing.
        host.rights = [](const QString& origin) {
            const bool all =
                origin == QLatin1String("nova://app") || origin == QLatin1String("nova://script");
            const bool some = origin == QLatin1String("nova://some");
            return OriginRights { all || some, [all](const QString&, const QString& member, std::uint32_t) {
                                     return all || member == QLatin1String("raw")
                                         || member == QLatin1String("later");
                                 } };
        };
        host.directory = [](const QString& name) {
            return current ? current->m_files.filePath(name) : QString();
        };
        // An image that is three wide, of "have".
        host.skinImage = [](const QUrl& url) {
            const QByteArray image =
                "iVBORw0KGgoAAAANSUhEUgAAAAMAAAABCAIAAACUgoPjAAAADUlEQVR4nGP4z8AAQQAR+AL+4+XvtgAAAABJRU5ErkJggg==";
            return url.host() == QLatin1String("have") ? QByteArray::fromBase64(image) : QByteArray();
        };
        host.firstPage = [](const QString& viewId) { return QUrl(viewId); };
        host.console = [](const QString& line, bool) {
            if (current)
                current->lines += line.section(QStringLiteral(" (nova:"), 0, 0);
        };
        host.opened = [](const QString&) {};
        host.loaded = [](const QString&, bool) {};
        return make(std::move(host));
    }();
    return *made;
}

WebTest::WebTest()
{
    page.reset();
    current = this;
}

WebTest::~WebTest()
{
    page.reset();
    view.reset();
    expectNothingLeft();
    current = nullptr;
}

void WebTest::expectNothingLeft()
{
    const auto left = [this] {
        const vexlite::LiveCounts live = core.liveCounts();
        return std::vector { live.pages, live.objects, live.listeners, live.promises, live.functions };
    };
    const std::vector<int> nothing(5, 0);
    waitFor([&] { return left() == nothing; });
    EXPECT_EQ(left(), nothing) << "pages, objects, listeners, promises, functions";
}

void WebTest::openScript()
{
    PageHost host;
    host.console = [this](const QString& line, bool) { lines += line; };
    host.uncaughtError = [this](const Outcome& error) { uncaught.push_back(error); };
    host.exitRequested = [this](int code) { exits.push_back(code); };
    host.play = [](const QString&) { return QString(); };
    PageOptions options;
    options.browser.browserId = QStringLiteral("script");
    page = webEngine().openPage(options, std::move(host));
    view = webEngine().makeView(QStringLiteral("script"), {});
    view->widget()->resize(Width, Width);
    view->widget()->show();
}

void WebTest::openPage(const QString& html)
{
    write(QStringLiteral("app"), QStringLiteral("page.html"), html);
    view = webEngine().makeView(QStringLiteral("nova://app/page.html"), {});
    view->widget()->resize(Width, Width);
    view->widget()->show();
}

void WebTest::write(const QString& host, const QString& name, const QString& content)
{
    QDir(m_files.path()).mkpath(host);
    QFile file(m_files.filePath(host + QLatin1Char('/') + name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content.toUtf8());
}

} // namespace engine::test

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int code = RUN_ALL_TESTS();
    // The browser's own threads have no orderly end.
    std::fflush(nullptr);
    _exit(code);
}
