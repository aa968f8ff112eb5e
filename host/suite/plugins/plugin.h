// One plugin of the stand-in.
#pragma once

#include "host/suite/plugins/packagecopy.h"
#include "suite/kplugin.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

namespace suite {

/// The only class of plugins there is: KPlugin's functions are this one's. When its files can not be
/// fetched, or that is cancelled, a plugin that was ready stays so, and nothing is left of what had been fetched. [GUI
/// thread]
class Plugin final : public KPlugin {
public:
    explicit Plugin(PluginManifest manifest);
    ~Plugin() override;

    const PluginManifest& manifest() const { return m_manifest; }
    LoadStatus begin(unsigned option, unsigned mode);
    State currentState() const { return m_state; }
    /// Of its files; empty while they have not been fetched.
    QString directory() const;
    /// Null without one.
    QObject* instance() const { return m_instance; }
    /// Ends a load in the background.
    void cancel();

private:
    enum class End { Succeeded, Failed, Canceled };

    bool isFetched() const;
    bool isComplete(bool withInstance) const;
    LoadStatus fetch(bool inBackground);
    void fetchMore();
    bool concludeFetch();
    bool install();
    bool makeInstance();
    void announce(End end);
    void announceLater(End end);
    LoadStatus refuse(const QString& error);

    PluginManifest m_manifest;
    State m_state = StateKnown;
    State m_before = StateKnown; ///< the load that is under way
    bool m_withInstance = true;  ///< of the last load
    bool m_isAwaited = false;    ///< a load in the background has not been announced as ended
    QPointer<QObject> m_instance;
    std::unique_ptr<PackageCopy> m_copy;
    int m_loads = 0; ///< of which something was fetched
    QTimer m_timer;
    QElapsedTimer m_fetching;
};

} // namespace suite
