#include "host/novahost/suite.h"

#include "host/krt/centre.h"
#include "host/novahost/browserfacts.h"
#include "host/novahost/hints.h"
#include "host/novahost/libraries.h"
#include "host/novahost/nearest.h"
#include "host/novahost/output.h"
#include "host/novahost/policy.h"
#include "host/novahost/record.h"
#include "host/novahost/tracefile.h"
#include "host/novahost/tracelines.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudservice.h"
#include "host/suite/network.h"
#include "host/suite/play.h"
#include "host/suite/plugins/pluginmanager.h"
#include "host/suite/remoteconfig/remoteconfig.h"
#include "host/suite/skin/skinservice.h"
#include "host/suite/web/webwidget.h"
#include "host/vexlite/failurelog.h"
#include "krt/dirs.h"
#include "suite/kpluginconfig.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSettings>
#include <QTcpServer>

namespace novahost {

namespace {

constexpr char LibraryName[] = "libvexlitejsapi.so";
constexpr char EntryName[] = "GetNovaExtensionJsApiObj";

vexlite::CoreServices readServices()
{
    const auto on = [](const char* name) { return profile::serviceOn(QString::fromLatin1(name)); };
    vexlite::CoreServices services;
    services.jsCore = on("jsCore");
    services.promiseService = on("promiseService");
    services.answerChannel = on("answerChannel");
    services.eventHubs = on("eventHubs");
    services.objectFactory = on("objectFactory");
    services.browsers = on("browsers");
    services.browserGroups = on("browserGroups");
    services.traceHook = on("traceHook");
    return services;
}

/// Loads a profile whose policy names only what there is: a misspelt name would deny nothing.
QString loadProfile(const QString& file)
{
    QString error = profile::load(file);
    if (error.isEmpty()) {
        const QString prefix = QString::fromLatin1("profile \"%1\": ").arg(file);
        for (const QString& unknown : findUnknownNames())
            error += (error.isEmpty() ? QString() : QStringLiteral("\n")) + prefix + unknown;
    }
    return error;
}

} // namespace

QString Suite::prepare(const Options& options)
{
    QString error;
    if (!options.profileFile.isEmpty())
        error = loadProfile(options.profileFile);
    for (const QString& service : options.without) {
        if (error.isEmpty() && !profile::switchOff(service, nullptr))
            error = QString::fromLatin1("--without: there is no service %1; %2")
                        .arg(service,
                            advise(profile::serviceNames(), service, "did you mean %1?",
                                "`novahost --help` lists all"));
    }
    if (error.isEmpty() && !options.dataDirectory.isEmpty()) {
        error = profile::setDataDirectory(options.dataDirectory);
        if (!error.isEmpty())
            error = QString::fromLatin1("--data: %1").arg(error);
    }
    if (error.isEmpty()) {
        suite::Play::read(options.play, error);
        if (!error.isEmpty())
            error = QString::fromLatin1("--play: %1").arg(error);
    }
    return error;
}

std::unique_ptr<Suite> Suite::start(const Options& options, QString& error)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
        QDir(profile::dataDirectory()).filePath(QStringLiteral("settings")));

    if (options.window && QGuiApplication::platformName() != QLatin1String("xcb")) {
        error = QStringLiteral("--window: there is no X display; set DISPLAY");
        return nullptr;
    }
    // The first question is when the suite notes where the directories that are closed to pages lead.
    krt::dirs::inBlackDownloadDir(QStringLiteral("/"));
    kpluginconfig::inPluginDownloadDir(QStringLiteral("/"));
    error = suite::trustCertificates();
    if (!error.isEmpty())
        return nullptr;
    vexlite::Core& core = vexlite::Core::start(readServices());
    core.setDenyMask(options.denyMask);
    std::unique_ptr<Suite> suite(new Suite);
    error = suite->watch(options);
    if (!error.isEmpty())
        return nullptr;
    suite->m_engine = engine::makeJscEngine();
    // Before any page is opened: so the cloud process is notified of a login before a page reacts to it.
    suite::CloudService::instance();
    const QString library = options.libraryFile.isEmpty()
        ? findLibrary(QLatin1String(LibraryName), QStringLiteral(NOVAHOST_LIBDIR))
        : options.libraryFile;
    if (!suite->loadLibrary(library, error))
        return nullptr;
    suite::PluginManager::start();
    // A plugin may have the skin.
    suite::SkinService::instance().start();
    suite::RemoteConfig::instance().start();
    suite->m_inBrowser = options.browser;
    suite->m_isEvaluation = options.command == Command::Eval;
    suite->m_timeLimitMs = static_cast<int>(options.timeLimit * 1000);
    if (options.devToolsPort) {
        // The engine says nothing when it does not get the port.
        if (!QTcpServer().listen(QHostAddress::LocalHost, static_cast<quint16>(options.devToolsPort))) {
            error =
                QString::fromLatin1("--devtools: another program has the port %1").arg(options.devToolsPort);
            return nullptr;
        }
        qputenv("QTWEBENGINE_REMOTE_DEBUGGING", "127.0.0.1:" + QByteArray::number(options.devToolsPort));
    }
    if (options.command == Command::Run) {
        const QString folder = QFileInfo(options.script).absolutePath();
        suite->m_browser.setApplication(folder);
        suite->m_browser.setScripts(folder);
    } else if (options.command == Command::Eval || options.command == Command::Repl) {
        suite->m_browser.setScripts(QDir::currentPath());
    }
    if (options.browser && !suite->m_browser.engine(error))
        return nullptr;
    suite::setViewMaker([browser = &suite->m_browser](const QString& viewId, engine::ViewHost host) {
        return browser->makeView(viewId, std::move(host));
    });
    suite::setPageChooser([browser = &suite->m_browser](const QString& viewId, const QUrl& page) {
        return browser->choosePage(viewId, page);
    });
    if (options.window || options.browser)
        suite->m_windowTitle = options.script.isNull() ? QLatin1String("") : options.script;
    return suite;
}

struct Suite::Watchers {
    std::unique_ptr<vexlite::FailureLog> failures;
    std::unique_ptr<TraceLines> lines;
    std::unique_ptr<TraceFile> trace;
    std::unique_ptr<Recorder> recorder;
    std::unique_ptr<Hints> hints;
};

Suite::Suite() = default;

QString Suite::watch(const Options& options)
{
    vexlite::Core& core = *vexlite::Core::instance();
    m_watchers = std::make_unique<Watchers>();
    QString error;
    const auto observe = [&](auto& place, auto made) {
        place = std::move(made);
        core.addObserver(place.get());
    };
    if (!options.failures.isEmpty()) {
        observe(m_watchers->failures, std::make_unique<vexlite::FailureLog>(options.failures));
        if (!m_watchers->failures->isOpen())
            return QString::fromLatin1("--failures: no file can be made in %1").arg(options.failures);
    }
    if (options.trace == QLatin1String("-"))
        observe(m_watchers->lines, std::make_unique<TraceLines>());
    else if (!options.trace.isEmpty()) {
        if (auto file =
                OutputFile::open(QStringLiteral("--trace"), options.trace, TraceFile::Beginning, error))
            observe(m_watchers->trace, std::make_unique<TraceFile>(std::move(file)));
    }
    if (error.isEmpty() && !options.record.isEmpty()) {
        if (auto file =
                OutputFile::open(QStringLiteral("--record"), options.record, Recorder::Beginning, error))
            observe(m_watchers->recorder, std::make_unique<Recorder>(std::move(file)));
    }
    const bool isForPages = options.command != Command::Members && options.command != Command::Policy;
    if (isForPages && !options.noHints) {
        m_watchers->hints = std::make_unique<Hints>(options.strict);
        core.setChecker(m_watchers->hints.get());
    }
    suite::Play::setWatch([&core](const QString& step) { core.reportStep(step); });
    return error;
}

bool Suite::finishWatching()
{
    const bool isTraced = !m_watchers->trace || m_watchers->trace->finish();
    return (!m_watchers->recorder || m_watchers->recorder->finish()) && isTraced;
}

bool Suite::loadLibrary(const QString& file, QString& error)
{
    if (file.isEmpty()) {
        error = QString::fromLatin1(
            "%1 lies neither in ../lib nor beside novahost: build it, or name it with --library")
                    .arg(QLatin1String(LibraryName));
        return false;
    }
    m_library.setFileName(file);
    m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    using Entry = void (*)(ExtensionFactoryMap*);
    if (!m_library.load()) {
        error = QString::fromLatin1("--library %1: %2").arg(file, m_library.errorString());
        return false;
    }
    const auto entry = reinterpret_cast<Entry>(m_library.resolve(EntryName));
    if (!entry) {
        error = QString::fromLatin1("--library %1: has no %2, so it is no libvexlitejsapi")
                    .arg(file, QLatin1String(EntryName));
        return false;
    }
    m_notSupported = reinterpret_cast<JSMemberInvoke>(m_library.resolve("NovaExtensionMemberNotSupported"));
    ExtensionFactoryMap factories;
    entry(&factories);
    vexlite::Core::instance()->setFactories(factories);
    return true;
}

Suite::~Suite()
{
    krt::kcc::shutdown();
    m_engine.reset();
    suite::RemoteConfig::instance().shutDown();
    suite::SkinService::instance().shutDown();
    suite::PluginManager::shutDown();
    closeWindows();
    suite::setViewMaker({});
    suite::setPageChooser({});
    m_browser.stop();
    suite::CloudService::shutDown();
    // Objects that deleteLater() was called for need the library for their destructors.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    suite::Play::setWatch({});
    if (m_library.isLoaded())
        m_library.unload();
    // Nothing calls observers any more.
    vexlite::Core::stop();
}

QStringList Suite::shownWindows() const
{
    QStringList titles;
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        return titles;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window && window != m_window)
            titles.append(window->windowTitle());
    }
    return titles;
}

QStringList Suite::playsLeft() const
{
    const std::shared_ptr<PagePlays> plays = m_plays.lock();
    return plays ? plays->left() : QStringList();
}

void Suite::closeWindows()
{
    delete m_window;
    suite::destroyWebWidgets();
}

void Suite::makeWindow(const QString& title, const QString& viewId)
{
    delete m_window;
    if (title.isNull())
        return;
    m_window = new suite::WebShell(title, viewId);
    QObject::connect(m_window, &suite::WebShell::closedByUser, qApp, &QCoreApplication::quit);
}

suite::WebShell* Suite::openWindow(const QUrl& url, const QString& title, QString& error)
{
    if (!m_browser.engine(error))
        return nullptr;
    const QString viewId = QString::fromLatin1("browser-%1").arg(++m_pages);
    m_browser.expect(viewId, url);
    makeWindow(title, viewId);
    QObject::connect(m_window, &QObject::destroyed, qApp, &QCoreApplication::quit);
    return m_window;
}

std::unique_ptr<engine::Page> Suite::openPage(const QStringList& arguments, engine::PageHost host)
{
    engine::PageOptions options;
    options.arguments = arguments;
    options.colors = useColors(stdout);
    options.errorColors = useColors(stderr);
    if (m_isEvaluation)
        options.inputName = QStringLiteral("eval");
    options.browser = makeBrowserFacts(QString::fromLatin1("browser-%1").arg(++m_pages));
    VEXBrowserTimes& times = options.browser.times;
    options.timeLimitMs = m_timeLimitMs;
    // Destroyed when the page closes, which ends its plays.
    const auto plays = std::make_shared<PagePlays>();
    m_plays = plays;
    host.play = [plays](const QString& steps) { return plays->begin(steps); };
    host.began = [this] {
        if (const auto began = std::exchange(scriptBegan, nullptr))
            began();
    };
    const QString viewId = options.browser.browserId;
    if (m_inBrowser)
        m_browser.expect(viewId);
    makeWindow(m_windowTitle, viewId);
    if (m_window) {
        m_window->resize(800, 600);
        m_window->show();
    }
    if (m_inBrowser) {
        // The page goes with its window.
        QObject::connect(m_window, &QObject::destroyed, qApp, &QCoreApplication::quit);
        QString error;
        engine::WebEngine* browser = m_browser.engine(error);
        return browser ? browser->openPage(options, std::move(host)) : nullptr;
    }
    std::unique_ptr<engine::Page> page = m_engine->openPage(options, std::move(host));
    // The page is empty until its script runs, so it has loaded at once.
    times.creationFinish = times.loadStart = times.loadReady = times.loadFinish =
        QDateTime::currentMSecsSinceEpoch();
    vexlite::Core::instance()->updateBrowser(page->context(), options.browser);
    return page;
}

} // namespace novahost
