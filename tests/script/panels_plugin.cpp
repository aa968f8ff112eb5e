// A document chat panel that does what a page tells it to do, also what no panel should.
#include "host/suite/plugins/pluginfactory.h"
#include "host/suite/plugins/pluginmanager.h"

#include <stdexcept>
#include <thread>

static bool isNextOneMute = false;

class MutePanel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    Q_INVOKABLE void qaNotify(const QString&) { qFatal("another parameter"); }

Q_SIGNALS:
    void qaNotify(const QVariantMap& notification);
};

class ObedientPanel : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~ObedientPanel() override { send({ { QStringLiteral("last"), true } }); }

    Q_INVOKABLE void qaNotify(const QVariantMap& given)
    {
        const QString what = given.value(QStringLiteral("do")).toString();
        if (what == QLatin1String("echo"))
            send(given);
        else if (what == QLatin1String("throw"))
            throw std::runtime_error("no");
        else if (what == QLatin1String("go"))
            suite::PluginManager::instance()->remove(QStringLiteral("knovaaidocschatpanel"));
        else if (what == QLatin1String("mute"))
            isNextOneMute = true;
        else if (what == QLatin1String("thread"))
            std::thread([this] { send({ { QStringLiteral("thread"), true } }); }).join();
        else if (what == QLatin1String("odd"))
            send({ { QStringLiteral("object"), QVariant::fromValue<QObject*>(this) } });
        else if (QObject* contract = KPluginManager::getInstance()->getPluginInstanceObject(
                     QStringLiteral("KContractMgrCommand")))
            QMetaObject::invokeMethod(contract, "sig_notifyToPanel",
                Q_ARG(QVariantMap, given.value(QStringLiteral("notification")).toMap()));
    }
    Q_INVOKABLE void qaNotify(const QVariantMap&, int) { qFatal("one parameter more"); }

Q_SIGNALS:
    void sig_panelNotify(const QVariantMap& notification);

private:
    void send(const QVariantMap& notification) { Q_EMIT sig_panelNotify(notification); }
};

class PanelFactory : public QObject, public suite::PluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
    Q_INTERFACES(suite::PluginFactory)

public:
    QObject* makeInstance(QObject* parent) override
    {
        if (std::exchange(isNextOneMute, false))
            return new MutePanel(parent);
        return new ObedientPanel(parent);
    }
};

#include "panels_plugin.moc"
