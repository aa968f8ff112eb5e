#include "webui/js_api_pluginhandle.h"

#include "framework/libraryowner.h"

#include <QCoreApplication>

KApiPluginHandle::KApiPluginHandle(QObject& plugin, Callback&& callback)
    : QObject(QCoreApplication::instance())
    , m_plugin(&plugin)
    , m_callback(std::move(callback))
{
    connect(libraryOwner(), &QObject::destroyed, this, [this] { delete this; });
    // By name: so the suite's signals are no symbols.
    connect(&plugin, SIGNAL(sigProgress(qint64, qint64)), SLOT(onProgress(qint64, qint64)));
    connect(&plugin, SIGNAL(sigSucceeded()), SLOT(onSucceeded()));
    connect(&plugin, SIGNAL(sigFailed()), SLOT(onFailed()));
    connect(&plugin, SIGNAL(sigCanceled()), SLOT(onCanceled()));
    connect(&plugin, SIGNAL(destroyed()), SLOT(onFailed()));
}

void KApiPluginHandle::onProgress(qint64 totalBytes, qint64 receivedBytes)
{
    m_callback({ jsapi::PluginLoadStep::Progress, totalBytes, receivedBytes });
}

void KApiPluginHandle::finish(jsapi::PluginLoadStep step)
{
    if (m_plugin)
        m_plugin->disconnect(this);
    deleteLater();
    // The function may run the event loop, in which this object goes.
    const Callback callback = std::move(m_callback);
    callback({ step, {}, {} });
}
