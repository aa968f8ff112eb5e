#include "bench/web/page.h"

#include "bench/web/channel.h"
#include "bench/web/object.h"
#include "framework/entry.h"
#include "host/suite/web/webshell.h"
#include "host/suite/web/webwidget.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLibrary>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QWebEngineView>

namespace bench {

namespace {

const QUrl Address(QStringLiteral("nova://script/"));
constexpr QSize WindowSize(400, 300);

constexpr char Scheme[] = "nova";

/// As the plug-in does, where it is not there.
void registerScheme()
{
    QWebEngineUrlScheme scheme(Scheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled);
    if (QWebEngineUrlScheme::schemeByName(scheme.name()).name().isEmpty())
        QWebEngineUrlScheme::registerScheme(scheme);
}

/// Runs the event loop until `isDone`.
template <typename Condition> void waitFor(const char* what, Condition isDone)
{
    constexpr int PatienceMs = 120'000;
    QTimer patience;
    patience.setSingleShot(true);
    patience.start(PatienceMs);
    while (!isDone()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!patience.isActive())
            qFatal("%s takes too long", what);
    }
}

class LibraryPage final : public Page {
public:
    explicit LibraryPage(const QString& viewId)
        : m_shell(QStringLiteral("bench"), viewId)
    {
        m_shell.resize(WindowSize);
        m_shell.show();
    }

private:
    QWebEnginePage& browserPage() override { return *m_shell.findChild<QWebEngineView*>()->page(); }

    suite::WebShell m_shell;
};

/// Has an answer to every prompt at once: for "put" it keeps the text, for "get" that is the result.
class PromptPage final : public QWebEnginePage {
public:
    using QWebEnginePage::QWebEnginePage;

private:
    bool javaScriptPrompt(const QUrl&, const QString& message, const QString& given, QString* result) override
    {
        if (message == QLatin1String("put"))
            m_text = given;
        *result = message == QLatin1String("get") ? m_text : m_answer;
        return true;
    }

    QString m_text;
    const QString m_answer = QStringLiteral("00;0;red1;");
};

class BarePage final : public Page {
public:
    BarePage(BareProfile& profile, bool hasChannel)
        : m_page(new PromptPage(&profile, &m_view))
    {
        m_view.setPage(m_page);
        if (hasChannel) {
            m_channel.registerObject(QStringLiteral("bench"), &m_object);
            m_page->setWebChannel(&m_channel);
        }
        auto* layout = new QVBoxLayout(&m_shell);
        layout->setContentsMargins({});
        layout->addWidget(&m_view);
        bool isLoaded = false;
        QObject::connect(m_page, &QWebEnginePage::loadFinished, &m_view, [&](bool ok) {
            if (!ok)
                qFatal("the document can not be loaded");
            isLoaded = true;
        });
        m_page->load(Address);
        m_shell.resize(WindowSize);
        m_shell.show();
        waitFor("a page", [&] { return isLoaded; });
        QObject::disconnect(m_page, &QWebEnginePage::loadFinished, &m_view, nullptr);
        if (!hasChannel)
            return;
        QFile script(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
        if (!script.open(QIODevice::ReadOnly))
            qFatal("Qt WebChannel has no script");
        m_page->runJavaScript(QString::fromUtf8(script.readAll()));
        measure(QStringLiteral(
                    "() => new Promise((resolve) => new QWebChannel(qt.webChannelTransport, (made) => {"
                    "globalThis.channel = made.objects.bench; resolve(); }))"),
            0);
    }
    ~BarePage() override
    {
        m_page->setWebChannel(nullptr);
        m_view.setParent(nullptr);
    }

private:
    QWebEnginePage& browserPage() override { return *m_page; }

    ChannelObject m_object;
    QWebChannel m_channel;
    QWidget m_shell;
    QWebEngineView m_view;
    PromptPage* m_page;
};

} // namespace

double Page::measure(const QString& function, int argument)
{
    // The title says how it went: every engine's view has one.
    static int serial = 0;
    const QString prefix = QStringLiteral("bench-%1 ").arg(++serial);
    QString outcome;
    QWebEnginePage& page = browserPage();
    const auto connection = QObject::connect(&page, &QWebEnginePage::titleChanged, [&](const QString& title) {
        if (title.startsWith(prefix))
            outcome = title.mid(prefix.size());
    });
    page.runJavaScript(QStringLiteral(R"(
        (async (run) => {
            const begin = performance.now();
            await run(%2);
            return performance.now() - begin;
        })(%1).then((time) => { document.title = '%3' + time; }, (error) => { document.title = '%3' + error; });
    )")
                           .arg(function)
                           .arg(argument)
                           .arg(prefix));
    waitFor("a measurement", [&] { return !outcome.isEmpty(); });
    QObject::disconnect(connection);
    bool ok = false;
    const double milliseconds = outcome.toDouble(&ok);
    if (!ok)
        qFatal("%s", qPrintable(outcome));
    return milliseconds / 1000;
}

Library::Library()
{
    vexlite::Core& core = vexlite::Core::start({});
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);
    factories[QStringLiteral("Bench")] = &webObjectFactory;
    core.setFactories(factories);
    QLibrary plugin(
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../lib/libnovaweb.so")));
    const auto make = reinterpret_cast<engine::MakeWebEngine>(plugin.resolve(engine::MakeWebEngineName));
    if (!make)
        qFatal("%s", qPrintable(plugin.errorString()));
    engine::WebEngineHost host;
    host.browser = [](const QString& viewId) {
        vexlite::BrowserFacts facts;
        facts.browserId = viewId;
        return facts;
    };
    host.rights = [](const QString&) {
        return engine::OriginRights { true,
            [](const QString&, const QString&, std::uint32_t) { return true; } };
    };
    host.directory = [](const QString&) { return QString(); };
    host.firstPage = [](const QString&) { return Address; };
    host.console = [](const QString& line, bool) { qWarning("%s", qPrintable(line)); };
    host.opened = [](const QString&) {};
    host.loaded = [this](const QString& viewId, bool) { m_loaded = viewId; };
    m_engine.reset(make(std::move(host)));
    suite::setViewMaker([this](const QString& viewId, engine::ViewHost viewHost) {
        return m_engine->makeView(viewId, std::move(viewHost));
    });
}

Library::~Library()
{
    suite::destroyWebWidgets();
    suite::setViewMaker({});
    m_engine.reset();
    vexlite::Core::stop();
}

std::unique_ptr<Page> Library::openPage()
{
    const QString viewId = QStringLiteral("view-%1").arg(++m_views);
    auto page = std::make_unique<LibraryPage>(viewId);
    waitFor("a page", [&] { return m_loaded == viewId; });
    return page;
}

BareProfile::BareProfile()
    : QWebEngineProfile((registerScheme(), static_cast<QObject*>(nullptr)))
{
    installUrlSchemeHandler(Scheme, &m_handler);
}

void BareProfile::Handler::requestStarted(QWebEngineUrlRequestJob* job)
{
    auto* document = new QBuffer(job);
    document->setData("<!doctype html><title>script</title>");
    document->open(QIODevice::ReadOnly);
    job->reply("text/html", document);
}

std::unique_ptr<Page> openBarePage(BareProfile& profile, bool hasChannel)
{
    return std::make_unique<BarePage>(profile, hasChannel);
}

} // namespace bench
