// KApiPluginHandle: follows the load of a plugin in the background.
#pragma once

#include "framework/arguments.h"

#include <QObject>
#include <QPointer>

namespace jsapi {

enum class PluginLoadStep { Progress, Succeeded, Failed, Canceled };
template <>
inline constexpr std::array<Choice<PluginLoadStep>, 4> ChoicesOf<PluginLoadStep> {
    { { PluginLoadStep::Progress, "Progress" }, { PluginLoadStep::Succeeded, "Succeeded" },
        { PluginLoadStep::Failed, "Failed" }, { PluginLoadStep::Canceled, "Canceled" } }
};

/// What the script function of a load is called with.
struct PluginLoadReport {
    PluginLoadStep step;
    std::optional<std::int64_t> totalBytes;
    std::optional<std::int64_t> receivedBytes;
    static constexpr auto fields()
    {
        using Self = PluginLoadReport;
        return std::tuple(property("step", &Self::step, "each but `Progress` is the last one"),
            property("totalBytes", &Self::totalBytes, "with `Progress`: how much there is to fetch"),
            property(
                "receivedBytes", &Self::receivedBytes, "with `Progress`: how much of it has been fetched"));
    }
};

} // namespace jsapi

/// Lives from a load's status 2 to its end, which is also that of the plugin: a child of the application, and goes with the
/// library. [GUI thread]
class KApiPluginHandle final : public QObject {
    Q_OBJECT

public:
    using Callback = jsapi::Callback<jsapi::PluginLoadReport>;

    /// Passes on what a plugin, which is being loaded, reports from now on.
    static void follow(QObject& plugin, Callback&& callback)
    {
        new KApiPluginHandle(plugin, std::move(callback));
    }

private:
    KApiPluginHandle(QObject& plugin, Callback&& callback);
    void finish(jsapi::PluginLoadStep step);

    QPointer<QObject> m_plugin;
    Callback m_callback;

public Q_SLOTS:
    void onProgress(qint64 totalBytes, qint64 receivedBytes);
    void onSucceeded() { finish(jsapi::PluginLoadStep::Succeeded); }
    void onFailed() { finish(jsapi::PluginLoadStep::Failed); }
    void onCanceled() { finish(jsapi::PluginLoadStep::Canceled); }
};
