// A theme and skin services of the test's own, which come, change and go.
#include "suite/kdrawhelper.h"
#include "suite/kskin.h"
#include "tests/support/library.h"
#include "tests/support/suite.h"

static QString skin = QStringLiteral("a");
static QColor window;

// A program's own definitions come before the suite's.
QString KDrawHelper::getCurrentSkinNameFromTheme()
{
    return skin;
}
QColor KDrawHelper::getColorFromTheme(const QString&, const QString&, const QColor&)
{
    return window;
}

namespace {

using Skins = support::LibraryTest;

TEST_F(Skins, AreNeverAnOlderOne)
{
    /// The theme has another colour.
    const auto change = [&](int red) {
        window = QColor(red, 0, 0);
        EXPECT_EQ(page.call("Skin", "getSkinColorConfig", R"({"config": ["w"]})"),
            "{\"w\":\"rgba(" + std::to_string(red) + ",0,0,1)\"}");
    };
    const auto start = [] {
        auto service = std::make_unique<KSkin>();
        service->setObjectName(QStringLiteral("novaoffice"));
        service->setParent(&support::application());
        return service;
    };
    withPayload = true;
    listen(page, "Skin", "skinchangeevent", "heard");
    change(1);
    change(2); // without a service nobody says so
    std::unique_ptr<KSkin> service = start();
    change(3);
    EXPECT_EQ(heard(), "") << "the skin is the same";
    onEvent = [&] { change(4); };
    Q_EMIT service->sigSkinChanged();
    EXPECT_EQ(heard(), R"(heard {"name":"a","previousName":"a"})");
    skin = QStringLiteral("b");
    change(5); // before the service emits
    service.reset();
    change(6);
    service = start();
    change(7);
    EXPECT_EQ(heard(), R"(heard {"name":"b","previousName":"a"})");
}

} // namespace
