#include "host/suite/plugins/plugin.h"

#include "host/suite/plugins/pluginfactory.h"
#include "host/suite/plugins/pluginlog.h"
#include "host/suite/showntext.h"

#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <limits>
#include <utility>

namespace suite {

namespace {

// The options and modes of KPlugin::load().
constexpr unsigned FromHereOnly = 1;
constexpr unsigned Again = 2;
constexpr unsigned WithoutInstance = 4;
constexpr unsigned AtOnce = 1;

constexpr int PieceMs = 10;
constexpr qint64 MaxPieceBytes = 1 << 20;

} // namespace

Plugin::Plugin(PluginManifest manifest)
    : m_manifest(std::move(manifest))
{
    connect(&m_timer, &QTimer::timeout, this, &Plugin::fetchMore);
}

Plugin::~Plugin()
{
    // While the plugin is still whole.
    delete m_instance;
}

bool Plugin::isFetched() const
{
    return m_manifest.source.isEmpty() || QFileInfo(PackageCopy::destination(m_manifest)).isDir();
}

QString Plugin::directory() const
{
    if (m_manifest.source.isEmpty())
        return m_manifest.directory;
    return isFetched() ? PackageCopy::destination(m_manifest) : QString();
}

bool Plugin::isComplete(bool withInstance) const
{
    return m_state == StateReady && isFetched()
        && (!withInstance || m_manifest.library.isEmpty() || m_instance);
}

KPlugin::LoadStatus Plugin::begin(unsigned option, unsigned mode)
{
    const bool isFetchNeeded = !isFetched() || (option == Again && !m_manifest.source.isEmpty());
    if (option == FromHereOnly && (m_copy || isFetchNeeded))
        return refuse(QStringLiteral("it is not on this machine"));
    // Whoever loads it while it is loaded waits for the same end.
    if (m_copy || m_isAwaited) {
        if (mode != AtOnce)
            return LoadContinues;
        if (m_copy) {
            const LoadStatus status = fetch(false);
            // Nothing is announced within a call.
            announceLater(status == LoadDone ? End::Succeeded : End::Failed);
            return status;
        }
    }
    m_withInstance = option != WithoutInstance;
    if (option != Again && isComplete(m_withInstance))
        return LoadDone;
    if (!isFetchNeeded)
        return install() ? LoadDone : LoadFailed;
    m_copy = std::make_unique<PackageCopy>(m_manifest);
    ++m_loads;
    m_before = std::exchange(m_state, StateLoading);
    return fetch(mode != AtOnce);
}

KPlugin::LoadStatus Plugin::refuse(const QString& error)
{
    qCWarning(pluginLog, "plugin %s can not be loaded: %s", qPrintable(m_manifest.name),
        qPrintable(escapeText(error)));
    return LoadFailed;
}

KPlugin::LoadStatus Plugin::fetch(bool inBackground)
{
    if (inBackground) {
        m_isAwaited = true;
        m_fetching.start();
        m_timer.start(PieceMs);
        return LoadContinues;
    }
    while (m_copy->step(std::numeric_limits<qint64>::max())) { }
    return concludeFetch() ? LoadDone : LoadFailed;
}

void Plugin::fetchMore()
{
    qint64 most = MaxPieceBytes;
    if (const qint64 rate = m_manifest.bytesPerSecond; rate > 0) {
        const double allowed = static_cast<double>(rate) / 1000 * static_cast<double>(m_fetching.elapsed());
        most = qBound<qint64>(0, static_cast<qint64>(allowed) - m_copy->received(), most);
    }
    const qint64 before = m_copy->received();
    const bool goesOn = m_copy->step(most);
    if (m_copy->received() != before) {
        const QPointer<Plugin> self(this);
        const int load = m_loads;
        // Whoever is notified may run the event loop, in which nothing else is reported, or do anything else.
        m_timer.stop();
        Q_EMIT sigProgress(m_manifest.bytes, m_copy->received());
        if (!self || !m_copy || load != m_loads)
            return;
        m_timer.start(PieceMs);
    }
    if (goesOn)
        return;
    announce(concludeFetch() ? End::Succeeded : End::Failed);
}

bool Plugin::concludeFetch()
{
    m_timer.stop();
    const std::unique_ptr<PackageCopy> copy = std::move(m_copy);
    if (!copy->error().isEmpty() || !copy->commit()) {
        refuse(copy->error());
        m_state = m_before == StateReady ? StateReady : StateFailed;
        return false;
    }
    return install();
}

bool Plugin::install()
{
    const bool isReady = !m_withInstance || m_manifest.library.isEmpty() || makeInstance();
    m_state = isReady ? StateReady : StateFailed;
    return isReady;
}

bool Plugin::makeInstance()
{
    // Not now: it may be one of its own functions that has the plugin loaded once more.
    if (QObject* former = m_instance.data())
        former->deleteLater();
    m_instance.clear();
    const QString file = findBelow(directory(), m_manifest.library);
    QPluginLoader loader(file);
    auto* factory = qobject_cast<PluginFactory*>(loader.instance());
    if (!factory) {
        refuse(loader.isLoaded() ? QStringLiteral("its library is none of a plugin") : loader.errorString());
        return false;
    }
    try {
        m_instance = factory->makeInstance(this);
    } catch (const std::exception& error) {
        refuse(QString::fromUtf8(error.what()));
        return false;
    } catch (...) {
        refuse(QStringLiteral("its library has thrown"));
        return false;
    }
    if (!m_instance)
        refuse(QStringLiteral("it makes no instance object"));
    return m_instance;
}

void Plugin::cancel()
{
    if (!m_copy)
        return;
    m_timer.stop();
    m_copy.reset();
    m_state = m_before;
    announce(End::Canceled);
}

void Plugin::announce(End end)
{
    m_isAwaited = false;
    if (end == End::Succeeded)
        Q_EMIT sigSucceeded();
    else if (end == End::Failed)
        Q_EMIT sigFailed();
    else
        Q_EMIT sigCanceled();
}

void Plugin::announceLater(End end)
{
    QMetaObject::invokeMethod(
        this, [this, end] { announce(end); }, Qt::QueuedConnection);
}

} // namespace suite

static suite::Plugin& whole(KPlugin* plugin)
{
    return *static_cast<suite::Plugin*>(plugin);
}

static const suite::Plugin& whole(const KPlugin* plugin)
{
    return *static_cast<const suite::Plugin*>(plugin);
}

int KPlugin::load(unsigned option, unsigned mode)
{
    return whole(this).begin(option, mode);
}

QVariant KPlugin::getProp(const QString& name)
{
    return whole(this).manifest().properties.value(name);
}

static QString findFile(const suite::Plugin& plugin, const QString& folder, const QString& relativePath)
{
    const QString directory = plugin.directory();
    const QString root = directory.isEmpty() ? QString() : suite::findBelow(directory, folder);
    return root.isEmpty() ? QString() : suite::findBelow(root, relativePath);
}

QString KPlugin::resourceFilePath(const QString& relativePath)
{
    return findFile(whole(this), whole(this).manifest().resources, relativePath);
}

QString KPlugin::frameworkFilePath(const QString& relativePath)
{
    return findFile(whole(this), whole(this).manifest().framework, relativePath);
}

QString KPlugin::localPath() const
{
    return whole(this).directory();
}

int KPlugin::state() const
{
    return whole(this).currentState();
}
