// Plugins with an instance object.
#include "host/suite/plugins/pluginmanager.h"
#include "tests/services/fixture.h"

#include <QVariantMap>

namespace {

class Plugins : public ServiceTest {
protected:
    ~Plugins() override { suite::PluginManager::shutDown(); }

    void start(const QByteArray& manifest)
    {
        EXPECT_TRUE(QDir().mkpath(path("own/wordcount")));
        write("own/wordcount/plugin.json", manifest);
        EXPECT_TRUE(QFile::copy(QStringLiteral(WORDCOUNT), path("own/wordcount/libwordcount.so")));
        useProfile(R"({"plugins": {"directories": ["${DATA}/own"]}})");
        suite::PluginManager::start();
    }
    static KPlugin& plugin()
    {
        return *KPluginManager::getInstance()->getPlugin(QStringLiteral("wordcount"));
    }
    static QObject* instance()
    {
        return KPluginManager::getInstance()->getPluginInstanceObject(QStringLiteral("wordcount"));
    }
};

TEST_F(Plugins, MakeTheirInstanceObjects)
{
    start(R"({"name": "wordcount", "version": "1", "library": "libwordcount.so"})");
    EXPECT_FALSE(instance());
    EXPECT_EQ(plugin().load(4, 0), KPlugin::LoadDone);
    EXPECT_FALSE(instance()) << "without the instance object";
    EXPECT_EQ(plugin().load(0, 0), KPlugin::LoadDone);
    QVariantMap counted;
    EXPECT_TRUE(QMetaObject::invokeMethod(instance(), "count", Q_RETURN_ARG(QVariantMap, counted),
        Q_ARG(QVariantMap, QVariantMap({ { QStringLiteral("text"), QStringLiteral("two words.") } }))));
    EXPECT_EQ(counted.value(QStringLiteral("words")), 2);

    const QPointer<QObject> first(instance());
    EXPECT_EQ(plugin().load(0, 0), KPlugin::LoadDone);
    EXPECT_EQ(instance(), first) << "is ready";
    EXPECT_EQ(plugin().load(2, 0), KPlugin::LoadDone);
    EXPECT_NE(instance(), first) << "is made once more";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(first);
    const QPointer<QObject> second(instance());
    int left = 0;
    QObject::connect(&plugin(), &QObject::destroyed, [&] { left += second || instance() ? 1 : 0; });
    suite::PluginManager::instance()->remove(QStringLiteral("wordcount"));
    EXPECT_FALSE(second);
    EXPECT_EQ(left, 0) << "goes before the plugin";
}

TEST_F(Plugins, AreLoadedWhenTheSuiteStarts)
{
    start(R"({"name": "wordcount", "version": "1", "library": "libwordcount.so", "autoload": true})");
    EXPECT_EQ(plugin().state(), KPlugin::StateReady);
    const QPointer<QObject> made(instance());
    EXPECT_TRUE(made);
    suite::PluginManager::shutDown();
    EXPECT_FALSE(made || KPluginManager::getInstance());
}

} // namespace
