#include "host/novahost/browser.h"

#include "host/engine/policy.h"
#include "host/novahost/browserfacts.h"
#include "host/novahost/libraries.h"
#include "host/novahost/output.h"
#include "host/profile/profile.h"
#include "host/suite/account/purchasepage.h"
#include "host/suite/plugins/pluginmanager.h"
#include "host/suite/skin/skinimages.h"

#include <QDir>
#include <QRegularExpression>
#include <QTimer>
#include <unistd.h>

namespace novahost {

namespace {

constexpr char EngineName[] = "libnovaweb.so";

/// The resources of a plugin with an instance object, empty when there is none of that name.
QString findPanelPages(const QString& name)
{
    const suite::PluginManager* manager = suite::PluginManager::instance();
    suite::Plugin* plugin = manager ? manager->find(name) : nullptr;
    return plugin && plugin->instance() ? plugin->resourceFilePath({}) : QString();
}

} // namespace

Browser::Browser() = default;
Browser::~Browser() = default;

engine::WebEngine* Browser::engine(QString& error)
{
    if (m_engine)
        return m_engine.get();
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX")) {
        error = QStringLiteral(
            "the browser engine's sandbox does not work for root; run novahost as another user, or, for "
            "pages that you trust, set QTWEBENGINE_DISABLE_SANDBOX=1");
        return nullptr;
    }
    m_library.setFileName(findLibrary(QLatin1String(EngineName), QStringLiteral(NOVAHOST_STANDIN_LIBDIR)));
    const auto make = m_library.fileName().isEmpty()
        ? nullptr
        : reinterpret_cast<engine::MakeWebEngine>(m_library.resolve(engine::MakeWebEngineName));
    if (!make) {
        error = QStringLiteral("the browser engine can not be loaded: %1")
                    .arg(m_library.fileName().isEmpty() ? QStringLiteral(
                             "%1 lies neither in ../lib nor beside novahost; build the target novaweb")
                                                              .arg(QLatin1String(EngineName))
                                                        : m_library.errorString());
        return nullptr;
    }
    m_engine.reset(make(host()));
    return m_engine.get();
}

void Browser::stop()
{
    m_engine.reset();
}

QUrl Browser::pageOf(const QString& viewId) const
{
    if (m_expected.contains(viewId))
        return m_expected[viewId];
    // Pages choose the identifiers of the windows that they open.
    static const QRegularExpression name(QStringLiteral("^[A-Za-z0-9_-]{1,100}$"));
    const QString file = viewId + QStringLiteral(".html");
    if (m_application.isEmpty() || !name.match(viewId).hasMatch() || !QDir(m_application).exists(file))
        return {};
    return QUrl(QStringLiteral("nova://app/") + file);
}

bool Browser::choosePage(const QString& viewId, const QUrl& url)
{
    if (m_engine)
        expect(viewId, url);
    return m_engine != nullptr;
}

std::unique_ptr<engine::View> Browser::makeView(const QString& viewId, engine::ViewHost host)
{
    if (!host.page.isEmpty())
        return m_engine ? m_engine->makeView(viewId, std::move(host)) : nullptr;
    if (!m_expected.contains(viewId) && pageOf(viewId).isEmpty())
        return nullptr;
    QString error;
    engine::WebEngine* made = engine(error);
    if (made)
        return made->makeView(viewId, std::move(host));
    fail(Failure, error);
    return nullptr;
}

engine::WebEngineHost Browser::host()
{
    const auto policy = std::make_shared<engine::Policy>(profile::current()->policy);
    engine::WebEngineHost host;
    host.browser = makeBrowserFacts;
    host.rights = [policy](const QString& origin) {
        if (engine::Origin::of(origin)
            == engine::Origin { QStringLiteral("nova"), QLatin1String(suite::PurchaseHost) })
            return engine::OriginRights {};
        const engine::OriginPolicy own = policy->of(origin);
        return engine::OriginRights { own.anything(),
            [own](const QString& tag, const QString& member, std::uint32_t mask) {
                return own.allows(tag, member, mask);
            } };
    };
    host.directory = [this](const QString& name) {
        if (name == QLatin1String(suite::PurchaseHost))
            return QString(QLatin1String(suite::PurchaseFiles));
        if (name == QLatin1String("script"))
            return m_scripts;
        return name == QLatin1String("app") ? m_application : findPanelPages(name);
    };
    host.skinImage = suite::drawSkinImage;
    host.firstPage = [this](const QString& viewId) { return pageOf(viewId); };
    host.console = printLine;
    host.opened = [this](const QString&) {
        if (const auto first = std::exchange(opened, {}))
            QTimer::singleShot(0, first);
    };
    host.loaded = [this](const QString& viewId, bool ok) {
        if (loaded)
            loaded(viewId, ok);
    };
    return host;
}

} // namespace novahost
