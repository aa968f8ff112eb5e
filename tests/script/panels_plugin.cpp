// A document chat panel that does what a page tells it to do, also what no panel should.
#include "host/suite/plugins/pluginfactory.h"
#include "host/suite/plugins/pluginmanager.h"

#include <QThread>
#include <QVariantMap>
#include <stdexcept>

namespace {

bool isNextOneMute = false;

QVariant nested(int levels)
{
    QVariant value = 1;
    for (; levels > 0; --levels)
        value = QVariantList { value };
    return value;
}

} // namespace

class ObedientPanel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~ObedientPanel() override { Q_EMIT sig_panelNotify({ { QStringLiteral("last"), true } }); }

    Q_INVOKABLE void qaNotify(const QVariantMap& given)
    {
        const QString what = given.value(QStringLiteral("do")).toString();
        if (what == QLatin1String("echo"))
            Q_EMIT sig_panelNotify(given);
        else if (what == QLatin1String("throw"))
            throw std::runtime_error("no");
        else if (what == QLatin1String("go"))
            suite::PluginManager::instance()->remove(QStringLiteral("knovaaidocschatpanel"));
        else if (what == QLatin1String("mute"))
            isNextOneMute = true;
        else if (what == QLatin1String("thread"))
            emitFromThread();
        else if (what == QLatin1String("odd"))
            Q_EMIT sig_panelNotify({ { QStringLiteral("nothing"), {} },
                { QStringLiteral("object"), QVariant::fromValue<QObject*>(this) },
                { QStringLiteral("huge"), qlonglong { 1 } << 60 } });
        else if (what == QLatin1String("deep"))
            Q_EMIT sig_panelNotify({ { QStringLiteral("deep"), nested(2000) } });
        else if (QObject* contract = KPluginManager::getInstance()->getPluginInstanceObject(
                     QStringLiteral("KContractMgrCommand")))
            QMetaObject::invokeMethod(contract, "sig_notifyToPanel",
                Q_ARG(QVariantMap, given.value(QStringLiteral("notification")).toMap()));
    }
    // Not what pages call.
    Q_INVOKABLE void qaNotify(const QVariantMap&, int) { qFatal("another method of that name"); }

Q_SIGNALS:
    void sig_panelNotify(const QVariantMap& notification);

private:
    void emitFromThread()
    {
        QThread* thread = QThread::create([this] {
            Q_EMIT sig_panelNotify({ { QStringLiteral("thread"), true } });
        });
        thread->start();
        thread->wait();
        delete thread;
    }
};

class MutePanel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    Q_INVOKABLE void qaNotify(const QString&) { qFatal("another parameter"); }

Q_SIGNALS:
    void qaNotify(const QVariantMap& notification);
};

class PanelFactory : public QObject, public suite::PluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
    Q_INTERFACES(suite::PluginFactory)

public:
    QObject* makeInstance(QObject* parent) override
    {
        return std::exchange(isNextOneMute, false) ? static_cast<QObject*>(new MutePanel(parent))
                                                   : new ObedientPanel(parent);
    }
};

#include "panels_plugin.moc"
