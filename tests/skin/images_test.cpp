// Icons, images by their addresses, and the types of files.
#include "host/suite/skin/skinimages.h"
#include "suite/kfilefilter.h"
#include "suite/kskinimageschemehandler.h"
#include "tests/skin/fixture.h"

#include <QUrl>

namespace {

/// The opaque colours of an image.
QStringList colorsOf(const QImage& image)
{
    QStringList colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (const QColor color = image.pixelColor(x, y); color.alpha() == 255)
                colors << color.name();
        }
    }
    colors.removeDuplicates();
    return colors;
}

QImage imageOf(const QString& name, const QString& query)
{
    return QImage::fromData(suite::drawSkinImage(QUrl(KSkinImageSchemeHandler::schemeName()
                                + QStringLiteral("://") + name + QLatin1Char('?') + query)),
        "PNG");
}

class Addresses : public SkinTest, public testing::WithParamInterface<Row> { };

TEST_P(Addresses, HaveAnImageOrNone)
{
    const QString given = GetParam().given.trimmed()
        + (GetParam().name == "HugeQuery" ? QString(100000, QLatin1Char('a')) : QString());
    const QSize size =
        imageOf(given.section(QLatin1Char('?'), 0, 0), given.section(QLatin1Char('?'), 1)).size();
    EXPECT_EQ(QStringLiteral("%1x%2").arg(size.width()).arg(size.height()).toStdString(),
        GetParam().expected.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Of, Addresses, testing::ValuesIn(rows(R"(
AnArea: light/toolbar/document-save?width=20&height=30&x=y -> 20x30
NoArea: light/document-save?width=1024&height=1024 -> 1024x1024
AnotherSkin: contrast/toolbar/document-save?width=1&height=1 -> 1x1
AnAreaThatThereIsNot: light/a%2Fb%20c/document-save?width=16&height=16 -> 16x16
TooWide: light/document-save?width=1025&height=16 -> 0x0
NoHeight: light/document-save?width=16 -> 0x0
NoNumber: light/document-save?width=16&height=1e1 -> 0x0
Negative: light/document-save?width=-16&height=16 -> 0x0
NoSkin: none/document-save?width=16&height=16 -> 0x0
NoIcon: light/none-such?width=16&height=16 -> 0x0
StepsUp: light/..%2F..%2Factions%2F22%2Fdocument-save?width=16&height=16 -> 0x0
Deep: light/a/b/document-save?width=16&height=16 -> 0x0
NoPath: light?width=16&height=16 -> 0x0
HugeQuery: light/document-save?width=16&height=16&a= -> 0x0
)")),
    rowName);

TEST_F(SkinTest, IconsHaveTheColoursOfTheirArea)
{
    makeSkin("own", R"({"toolbar": {"icon": "#ff0000"}, "CommonPalette": {"windowText": "#0000ff"}})");
    ASSERT_TRUE(use("own"));
    const QString query = QStringLiteral("width=64&height=64");
    for (const auto& [area, expected] : { std::pair("toolbar", "#ff0000"), { "none/such", "#0000ff" },
             { "", "#0000ff" }, { "..", "#0000ff" } }) {
        const QString name =
            KDrawHelper::bindIconStyleColor(QStringLiteral("document-save"), QString::fromLatin1(area));
        EXPECT_EQ(colorsOf(imageOf(name, query)), QStringList(QString::fromLatin1(expected)))
            << name.toStdString();
    }
    EXPECT_GT(colorsOf(imageOf(QStringLiteral("own/application-pdf"), query)).size(), 1);
    EXPECT_EQ(
        KDrawHelper::bindIconStyleColor(QStringLiteral("none-such"), QStringLiteral("toolbar")), QString());
    EXPECT_TRUE(KDrawHelper::loadIcon(QStringLiteral("none-such")).isNull());
    // One that is there follows the theme.
    const QIcon icon = KDrawHelper::loadIcon(QStringLiteral("document-save"));
    EXPECT_TRUE(icon.availableSizes().contains(QSize(22, 22)));
    EXPECT_EQ(colorsOf(icon.pixmap(22, 22).toImage()), QStringList(QStringLiteral("#0000ff")));
    EXPECT_TRUE(use("contrast"));
    EXPECT_EQ(colorsOf(icon.pixmap(22, 22).toImage()), QStringList(QStringLiteral("#ffffff")));
}

/// Whether there is an icon of their own and one of any kind, and the extensions.
TEST_F(SkinTest, FileTypesHaveIconsAndExtensions)
{
    const KFileFilter& filter = *KFileFilter::instance();
    for (const Row& row :
        rows("docx: -> 11 docx\nDOC: -> 11 doc\nxlsx: -> 11 xlsx\npptx: -> 01 pptx\nodt: -> 11 odt\n"
             "pdf: -> 11 pdf\ncsv: -> 11 csv\nhtml: -> 11 htm,html\ndocm: -> 01 docm\nfolder: -> 11\n"
             "none-such: -> 00\n../x: -> 00\n: -> 00")) {
        const QString type = QString::fromStdString(row.name);
        const auto has = [&](const char* skin, bool all) {
            return filter.hasFileTypeIcon(type, QString::fromLatin1(skin), all);
        };
        QStringList extensions = filter.extensions(type);
        extensions.sort();
        EXPECT_EQ(QStringLiteral("%1%2 ")
                      .arg(has("dark", false))
                      .arg(has("dark", true))
                      .append(extensions.join(QLatin1Char(',')))
                      .trimmed()
                      .toStdString(),
            row.expected.toStdString())
            << row.name;
        EXPECT_FALSE(has("none", true));
        EXPECT_EQ(filter.fileTypeIcon(type) == QStringLiteral("unknown"), !has("dark", true)) << row.name;
        EXPECT_FALSE(KDrawHelper::loadIcon(filter.fileTypeIcon(type)).isNull()) << row.name;
    }
    useProfile(R"({"services": {"fileFilter": false}})");
    EXPECT_FALSE(KFileFilter::instance());
}

} // namespace
