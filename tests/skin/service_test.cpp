// Who uses which skin, and what windows look like then.
#include "host/suite/plugins/pluginmanager.h"
#include "host/suite/web/webwidget.h"
#include "tests/skin/fixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>

namespace {

QString corner(QWidget& widget)
{
    widget.resize(20, 20);
    return widget.grab().toImage().pixelColor(1, 1).name();
}

TEST_F(SkinTest, ASwitchRepaintsWindowsAndIsAnnouncedOnce)
{
    QLabel label(QStringLiteral("text"));
    suite::PageWidget untouched(QStringLiteral("a"));
    suite::PageWidget own(QStringLiteral("b"));
    own.setWindowBackgroundColor(0xff102030);
    int signals = 0;
    QObject::connect(kskin(), &KSkin::sigSkinChanged, [&] { ++signals; });
    EXPECT_EQ(corner(label), QStringLiteral("#f5f6f7"));
    EXPECT_EQ(corner(untouched), QStringLiteral("#ffffff"));
    for (const char* skin : { "dark", "dark", "none" })
        EXPECT_EQ(use(skin), qstrcmp(skin, "none") != 0);
    EXPECT_EQ(corner(label), QStringLiteral("#22252a"));
    EXPECT_EQ(corner(untouched), QStringLiteral("#1a1c20"));
    EXPECT_EQ(corner(own), QStringLiteral("#102030"));
    EXPECT_EQ(signals, 1);
    // Whose frames must not be shades of black.
    QPushButton button(QStringLiteral("text"));
    EXPECT_NE(corner(button), QStringLiteral("#ffffff"));
    EXPECT_TRUE(use("contrast"));
    EXPECT_EQ(corner(button), QStringLiteral("#ffffff"));
}

TEST_F(SkinTest, UsersKeepTheirChoices)
{
    suite::AccountService& accounts = suite::AccountService::instance();
    accounts.signIn(QStringLiteral("user-1"));
    QCoreApplication::processEvents();
    EXPECT_EQ(kskin()->getUserId(), QStringLiteral("user-1"));
    int signals = 0;
    QObject::connect(kskin(), &KSkin::sigSkinChanged, [&] { ++signals; });
    EXPECT_TRUE(use("contrast"));
    EXPECT_TRUE(kskin()->setUserUsingSkin(
        QStringLiteral("user-2"), QStringLiteral("dark"), { QStringLiteral("writer") }));
    EXPECT_EQ(name(), QStringLiteral("contrast"));
    for (const char* skin : { "contrast", "light", "none", "contrast" })
        kskin()->addCurrentUserSkinHistory(QString::fromLatin1(skin));
    accounts.signIn(QStringLiteral("user-2"));
    QCoreApplication::processEvents();
    EXPECT_EQ(name(), QStringLiteral("dark"));
    EXPECT_EQ(signals, 2);
    accounts.signOut();
    EXPECT_EQ(name(), QStringLiteral("light"));
    EXPECT_EQ(kskin()->getUserId(), QString());
    const QJsonDocument expected = QJsonDocument::fromJson(R"({"users": {
        "user-1": {"areas": [], "skin": "contrast", "history": ["contrast", "light"]}, "user-2": {"areas": ["writer"], "skin": "dark"}}})");
    EXPECT_EQ(QJsonDocument::fromJson(read("skins.json")), expected);
    accounts.signIn(QStringLiteral("user-1"));
    EXPECT_EQ(name(), QStringLiteral("contrast"));
}

TEST_F(SkinTest, APluginIsASkinAsLongAsItIsThere)
{
    const char* const plugin = R"({"name": "sea", "version": "1", "title": "Sea"})";
    QDir(path("")).mkpath(QStringLiteral("plugins/sea"));
    write("plugins/sea/plugin.json", plugin);
    write(
        "plugins/sea/skin.json", R"({"name": "sea", "title": "Sea", "colorScheme": "dark", "base": "dark"})");
    write("plugins/sea/theme.json", R"({"CommonPalette": {"window": "#000080"}})");
    write("plugins/sea/custom.kuip", R"({"CommonPalette": {"window": "#008000"}})");
    EXPECT_FALSE(use("sea"));
    suite::PluginManager::start();
    EXPECT_TRUE(use("sea"));
    suite::PluginManager::instance()->remove(QStringLiteral("sea"));
    EXPECT_EQ(color("window").name(), QStringLiteral("#000080"));
    EXPECT_EQ(color("base").name(), QStringLiteral("#1a1c20"));
    service.start();
    EXPECT_EQ(name(), QStringLiteral("light"));
    suite::PluginManager::instance()->add(QStringLiteral("sea"));
    service.start();
    EXPECT_EQ(name(), QStringLiteral("sea"));
    suite::PluginManager::shutDown();
}

TEST_F(SkinTest, ServicesCanBeMissing)
{
    EXPECT_TRUE(use("dark"));
    useProfile(R"({"services": {"skin": false, "accountSdk": false}})");
    EXPECT_EQ(suite::SkinService::user(), QString());
    service.start();
    EXPECT_FALSE(kskin());
    EXPECT_EQ(name(), QStringLiteral("light"));
    EXPECT_TRUE(service.choose(QStringLiteral("contrast")));
    EXPECT_EQ(name(), QStringLiteral("contrast"));
}

} // namespace
