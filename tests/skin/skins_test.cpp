// Skins, their files and values.
#include "suite/kthemeloader.h"
#include "tests/skin/fixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <cmath>

namespace {

QMap<QString, QStringList> namesOf(const QString& skin)
{
    QFile file(QStringLiteral(":/novaskin/%1/theme.json").arg(skin));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QMap<QString, QStringList> names;
    const QJsonObject groups = QJsonDocument::fromJson(file.readAll()).object();
    for (auto group = groups.begin(); group != groups.end(); ++group)
        names[group.key()] = group->toObject().keys();
    return names;
}

double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({ luminance(one), luminance(other) });
    return (light + 0.05) / (dark + 0.05);
}

TEST_F(SkinTest, ThoseBuiltInHaveTheSameNamesAndAreReadable)
{
    const auto expected = namesOf(QStringLiteral("light"));
    EXPECT_EQ(expected.size(), 7);
    for (const auto& [skin, text, icon] :
        { std::tuple("light", 4.5, 3.0), { "dark", 4.5, 3.0 }, { "contrast", 7.0, 7.0 } }) {
        EXPECT_EQ(namesOf(QString::fromLatin1(skin)), expected) << skin;
        ASSERT_TRUE(use(skin));
        ASSERT_EQ(name(), QString::fromLatin1(skin));
        for (const char* area : { "toolbar", "sidebar", "panel", "statusbar", "menu" }) {
            EXPECT_GE(contrast(color("text", area), color("background", area)), text) << skin << area;
            EXPECT_GE(contrast(color("icon", area), color("background", area)), icon) << skin << area;
        }
        for (const auto& [front, back] : { std::pair("windowText", "window"), { "text", "base" },
                 { "text", "alternateBase" }, { "secondaryText", "window" }, { "placeholderText", "base" },
                 { "buttonText", "button" }, { "highlightedText", "highlight" }, { "tooltipText", "tooltip" },
                 { "link", "window" }, { "linkVisited", "window" } })
            EXPECT_GE(contrast(color(front), color(back)), text) << skin << front;
        for (const char* front : { "error", "warning", "success", "info" })
            EXPECT_GE(contrast(color(front, "CommonThemePalette"), color("window")), text) << skin << front;
        EXPECT_GE(
            contrast(color("accentText", "CommonThemePalette"), color("accent", "CommonThemePalette")), text)
            << skin;
    }
}

class BrokenThemes : public SkinTest, public testing::WithParamInterface<Row> { };

TEST_P(BrokenThemes, AreRefusedWithTheirPlaceAndChangeNothing)
{
    makeSkin("own", GetParam().given.toUtf8());
    QString error;
    EXPECT_FALSE(suite::loadSkin(QStringLiteral("own"), error));
    EXPECT_EQ(
        error.section(QStringLiteral("theme.json: "), 1).toStdString(), GetParam().expected.toStdString());
    EXPECT_FALSE(use("own"));
    EXPECT_EQ(name(), QStringLiteral("light"));
    EXPECT_EQ(read("skins.json"), "");
    KThemeLoader loader;
    EXPECT_FALSE(loader.load(path("skins/own/theme.json")));
    EXPECT_EQ(
        loader.value(QStringLiteral("CommonPalette"), QStringLiteral("base")), QStringLiteral("#ffffff"));
}

INSTANTIATE_TEST_SUITE_P(Texts, BrokenThemes, testing::ValuesIn(rows(R"rows(
Empty: -> line 1, column 1: is not JSON; look for a missing quote, comma or bracket before it
List: [] -> the theme file: must be an object
Group: {"A": 1} -> A: must be an object
Boolean: {"A": {"b": true}} -> A.b: must be a text, a number of 32 bits, or a gradient
LargeNumber: {"A": {"b": 4294967296}} -> A.b: must be a text, a number of 32 bits, or a gradient
Colour: {"A": {"b": "#0000000"}} -> A.b: must be a colour: "#rrggbb", "#rrggbbaa", "rgba(r, g, b, a)" or a name
Function: {"A": {"b": "rgb(1, 2, 256)"}} -> A.b: must be a colour: "#rrggbb", "#rrggbbaa", "rgba(r, g, b, a)" or a name
NoStops: {"A": {"b": {"type": "linear"}}} -> A.b: needs "stops"
OneStop: {"A": {"b": {"type": "linear", "stops": [[0, "red"]]}}} -> A.b.stops: must be a list of 2 to 64 stops
Form: {"A": {"b": {"type": "mesh", "stops": [[0, "red"], [1, "red"]]}}} -> A.b.type: must be one of "linear", "radial", "conical"
Key: {"A": {"b": {"type": "radial", "stops": [[0, "red"], [1, "red"]], "size": 1}}} -> A.b.size: is not a key of a theme file; use one of angle, center, end, radius, spread, start, stops, type
StopOutside: {"A": {"b": {"type": "linear", "stops": [[0, "red"], [2, "red"]]}}} -> A.b.stops[1][0]: must be a number from 0 to 1
StopOfNoColour: {"A": {"b": {"type": "linear", "stops": [[0, "red"], [1, "reddish"]]}}} -> A.b.stops[1]: must be a colour: "#rrggbb", "#rrggbbaa", "rgba(r, g, b, a)" or a name
StopsInDisorder: {"A": {"b": {"type": "linear", "stops": [[1, "red"], [0, "red"]]}}} -> A.b.stops[1]: must be behind the stop before it
Point: {"A": {"b": {"type": "conical", "center": [0], "stops": [[0, "red"], [1, "red"]]}}} -> A.b.center: must be a point: [x, y], each from -10 to 10
)rows")),
    rowName);

TEST_F(SkinTest, SkinsThatCanNotBeUsedAreRefused)
{
    makeSkin("one", "{}", R"({"name": "one", "title": "T", "colorScheme": "light", "base": "other"})");
    makeSkin("other", "{}", R"({"name": "other", "title": "T", "colorScheme": "light", "base": "one"})");
    makeSkin("alias", "{}", R"({"name": "other", "title": "T", "colorScheme": "light"})");
    makeSkin("bare", "{}", "{}");
    makeSkin("gone", "{}");
    QFile::remove(path("skins/gone/theme.json"));
    for (const auto& [skin, reason] : { std::pair("one", "is its own base: one, other, one"),
             { "alias", "skin.json: name: must be \"alias\"" },
             { "bare", "skin.json: the skin: needs \"title\"" }, { "gone", "theme.json: can not be read" },
             { "none\n", "skin \"none\\n\": there is none of this name" },
             { "../skins/light", "there is none of this name" }, { "", "there is none of this name" } }) {
        QString error;
        EXPECT_FALSE(suite::loadSkin(QString::fromLatin1(skin), error));
        EXPECT_TRUE(error.contains(QLatin1String(reason))) << error.toStdString();
        EXPECT_FALSE(use(skin));
    }
    EXPECT_EQ(name(), QStringLiteral("light"));
}

class Values : public SkinTest, public testing::WithParamInterface<Row> { };

TEST_P(Values, AreAsCssHasThem)
{
    makeSkin("own", QByteArray(R"({"A": {"b": )") + GetParam().given.toUtf8() + "}}");
    ASSERT_TRUE(use("own"));
    const QColor color = this->color("b", "A");
    const QString found = KThemeLoader().value(QStringLiteral("A"), QStringLiteral("b"))
        + (color.isValid() ? QStringLiteral(" = ") + color.name(QColor::HexArgb) : QString());
    EXPECT_EQ(found.toStdString(), GetParam().expected.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Of, Values, testing::ValuesIn(rows(R"rows(
ShortColour: "#FA0" -> #FA0 = #ffffaa00
ShortColourWithAlpha: "#1238" -> #1238 = #88112233
ColourWithAlpha: "#11223380" -> #11223380 = #80112233
Function: "RGBA( 1, 2,3 , .5)" -> RGBA( 1, 2,3 , .5) = #80010203
Name: "teal" -> teal = #ff008080
Text: "Noto Sans, 10pt" -> Noto Sans, 10pt
EmptyText: "" ->
Number: 4 -> 4
Fraction: -0.25 -> -0.25
Linear: {"type": "linear", "stops": [[0, "#fff"], [0.5, "#00000080"], [1, "red"]]} -> linear-gradient(180deg, rgba(255,255,255,1) 0%, rgba(0,0,0,0.501961) 50%, rgba(255,0,0,1) 100%)
LinearFromTo: {"type": "linear", "start": [0, 0], "end": [1, 0], "spread": "repeat", "stops": [[0, "#fff"], [1, "#000"]]} -> repeating-linear-gradient(90deg, rgba(255,255,255,1) 0%, rgba(0,0,0,1) 100%)
Radial: {"type": "radial", "center": [0, 1], "stops": [[0, "#fff"], [1, "#000"]]} -> radial-gradient(50% 50% at 0% 100%, rgba(255,255,255,1) 0%, rgba(0,0,0,1) 100%)
Conical: {"type": "conical", "angle": 45, "stops": [[0, "#fff"], [1, "#000"]]} -> conic-gradient(from 45deg at 50% 50%, rgba(255,255,255,1) 0%, rgba(0,0,0,1) 100%)
)rows")),
    rowName);

/// What the suite paints is what CSS says: the colours at the four edges of a square.
TEST_F(SkinTest, GradientsTurnAsInCss)
{
    constexpr int Side = 100;
    makeSkin("own", R"({"A": { "right": {"type": "linear", "angle": 90, "stops": [[0, "#f00"], [1, "#00f"]]},
        "up": {"type": "linear", "angle": 0, "stops": [[0, "#f00"], [1, "#00f"]]},
        "turn": {"type": "conical", "stops": [[0, "#f00"], [0.25, "#0f0"], [0.5, "#00f"], [1, "#f00"]]} }})");
    ASSERT_TRUE(use("own"));
    for (const auto& [gradient, x, y, expected] :
        { std::tuple("right", 0, 50, "#ff0000"), { "right", 99, 50, "#0000ff" }, { "up", 50, 0, "#0000ff" },
            { "up", 50, 99, "#ff0000" }, { "turn", 99, 50, "#00ff00" }, { "turn", 50, 99, "#0000ff" } }) {
        QImage image(Side, Side, QImage::Format_RGB32);
        QPainter(&image).fillRect(image.rect(),
            KDrawHelper::getGradientFromTheme(QStringLiteral("A"), QString::fromLatin1(gradient), {}));
        const QRgb found = image.pixel(x, y) & 0xe0e0e0;
        EXPECT_EQ(found, QColor(QString::fromLatin1(expected)).rgb() & 0xe0e0e0) << gradient << x << y;
    }
}

TEST_F(SkinTest, ABaseAndTheProfileHaveValuesToo)
{
    makeSkin("own", R"({"CommonPalette": {"radius": 9, "base": "#010203"}})",
        R"({"name": "own", "title": "T", "colorScheme": "light", "base": "dark"})");
    useProfile(
        R"({"skin": {"current": "own", "directories": ["${DATA}/skins"]}, "theme": {"CommonThemePalette": {"accent": "#123456"}}})");
    EXPECT_EQ(name(), QStringLiteral("own"));
    EXPECT_EQ(color("base").name(), QStringLiteral("#010203"));
    EXPECT_EQ(color("window").name(), QStringLiteral("#22252a"));
    EXPECT_EQ(color("accent", "CommonThemePalette").name(), QStringLiteral("#123456"));
    const auto hint = [](const char* name) {
        return KDrawHelper::getHintFromTheme(QStringLiteral("CommonPalette"), QString::fromLatin1(name), -1);
    };
    EXPECT_EQ(hint("radius"), 9);
    EXPECT_EQ(hint("isDark"), 1);
    EXPECT_EQ(hint("base"), -1);
    EXPECT_EQ(KDrawHelper::getGradientFromTheme(
                  QStringLiteral("CommonPalette"), QStringLiteral("base"), QRadialGradient())
                  .type(),
        QGradient::RadialGradient);
}

TEST_F(SkinTest, ALoaderPutsAFileOverTheTheme)
{
    write("custom.kuip", R"({"CommonPalette": {"base": "#123"}, "New": {"value": 1}})");
    KThemeLoader loader;
    EXPECT_TRUE(loader.load(path("custom.kuip")));
    EXPECT_FALSE(loader.load(path("missing")));
    const auto value = [&](const char* group, const char* name) {
        return loader.value(QString::fromLatin1(group), QString::fromLatin1(name));
    };
    EXPECT_EQ(value("CommonPalette", "base"), QStringLiteral("#123"));
    EXPECT_EQ(value("CommonPalette", "window"), QStringLiteral("#f5f6f7"));
    EXPECT_EQ(value("New", "value"), QStringLiteral("1"));
    EXPECT_TRUE(value("New", "none").isNull() && value("none", "value").isNull());
    EXPECT_EQ(color("base").name(), QStringLiteral("#ffffff"));
}

} // namespace
