// A theme and skin services of the test's own, which come, change and go.
#include "suite/kdrawhelper.h"
#include "suite/kskin.h"
#include "tests/support/library.h"
#include "tests/support/suite.h"

static QString skin = QStringLiteral("a");
static int red = 0;

// A program's own definitions come before the suite's.
QString KDrawHelper::getCurrentSkinNameFromTheme()
{
    return skin;
}
QColor KDrawHelper::getColorFromTheme(const QString&, const QString&, const QColor&)
{
    return { red, 0, 0 };
}

using Skins = support::LibraryTest;

TEST_F(Skins, AreNeverAnOlderOne)
{
    std::optional<KSkin> service;
    const auto readAnother = [&] {
        const std::string color = "rgba(" + std::to_string(++red) + ",0,0,1)";
        EXPECT_EQ(
            page.call("Skin", "getSkinColorConfig", R"({"config": ["w"]})"), R"({"w":")" + color + "\"}");
    };
    const auto start = [&] {
        service.emplace().setParent(&support::application());
        service->setObjectName(QStringLiteral("novaoffice"));
        readAnother();
    };
    withPayload = true;
    listen(page, "Skin", "skinchangeevent", "heard");
    for (int times = 0; times < 2; ++times)
        readAnother(); // without a service nobody says so
    start();
    onEvent = readAnother;
    Q_EMIT service->sigSkinChanged();
    skin = QStringLiteral("b");
    service.reset();
    readAnother();
    start();
    EXPECT_EQ(heard(), R"(heard {"name":"a","previousName":"a"}; heard {"name":"b","previousName":"a"})");
}
