// A notification to the document chat panel and the panel's back, against its method invoked and its signal received without
// the library. The panel is the stand-in's plugin, which answers from the event loop; what it is asked is none of its questions.
#include "bench/libraryobject.h"
#include "bench/nativefunction.h"
#include "host/suite/plugins/pluginmanager.h"
#include "vexlite/jsapiutil.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

namespace bench {

namespace {

const QString PanelName = QStringLiteral("knovaaidocschatpanel");

/// The panel of the process, with the plugins for as long as this lives.
class Panel {
public:
    Panel()
    {
        suite::PluginManager::start();
        KPlugin* plugin = suite::PluginManager::instance()->getPlugin(PanelName);
        if (!plugin || plugin->load(0, 1) != KPlugin::LoadDone)
            qFatal("There is no panel.");
        m_object = suite::PluginManager::instance()->getPluginInstanceObject(PanelName);
    }
    ~Panel() { suite::PluginManager::shutDown(); }
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    QObject* object() const { return m_object; }

private:
    QObject* m_object;
};

const QVariantMap Notification { { QStringLiteral("type"), QStringLiteral("bench") },
    { QStringLiteral("text"), QStringLiteral("a notification of two strings") } };

/// Calls `send` and waits until `heard` has grown, over and over.
template <typename Send> void roundTrips(benchmark::State& state, const std::int64_t& heard, Send send)
{
    for (auto _ : state) {
        const std::int64_t before = heard;
        send();
        while (heard == before)
            QCoreApplication::processEvents();
    }
}

void member(benchmark::State& state)
{
    const Panel panel;
    const LibraryObject chat(QStringLiteral("AiDocsChat"));
    std::int64_t heard = 0;
    const KJSVariant callback = makeFunction(chat.context(), [&](const JSApiArguments&) { ++heard; });
    (void)chat.call(chat.member(u"registerQACallback"), JSApiArguments(&callback, 1));
    const std::int32_t notify = chat.member(u"qaNotify");
    KJSVariant notification;
    KJSApiUtil::ConvertQVariantToJSVariant(Notification, notification);
    roundTrips(
        state, heard, [&] { benchmark::DoNotOptimize(chat.call(notify, JSApiArguments(&notification, 1))); });
}
BENCHMARK(member)->Name("panel/member")->Unit(benchmark::kMicrosecond);

/// What hears the panel without the library.
class Receiver final : public QObject {
    Q_OBJECT

public:
    std::int64_t heard = 0;

public Q_SLOTS:
    void hear(const QVariantMap&) { ++heard; }
};

void direct(benchmark::State& state)
{
    const Panel panel;
    Receiver receiver;
    QObject::connect(
        panel.object(), SIGNAL(sig_panelNotify(QVariantMap)), &receiver, SLOT(hear(QVariantMap)));
    roundTrips(state, receiver.heard, [&] {
        if (!QMetaObject::invokeMethod(panel.object(), "qaNotify", Q_ARG(QVariantMap, Notification)))
            qFatal("The panel has no such method.");
    });
}
BENCHMARK(direct)->Name("panel/invokeMethod")->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace bench

#include "panels.moc"
