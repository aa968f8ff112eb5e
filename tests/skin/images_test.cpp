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

struct AddressCase {
    const char* name;
    QString address;
    QSize size; ///< invalid: there is no image
};

class Addresses : public SkinTest, public testing::WithParamInterface<AddressCase> { };

TEST_P(Addresses, HaveAnImageOrNone)
{
    const QImage image = imageOf(
        GetParam().address.section(QLatin1Char('?'), 0, 0), GetParam().address.section(QLatin1Char('?'), 1));
    EXPECT_EQ(image.isNull(), !GetParam().size.isValid());
    EXPECT_TRUE(image.isNull() || image.size() == GetParam().size);
}

AddressCase address(const char* name, const char* address, QSize size = {})
{
    return { name, QString::fromLatin1(address), size };
}

INSTANTIATE_TEST_SUITE_P(Of, Addresses,
    testing::Values(address("AnArea", "light/toolbar/document-save?width=20&height=30&x=y", { 20, 30 }),
        address("NoArea", "light/document-save?width=1024&height=1024", { 1024, 1024 }),
        address("AnotherSkin", "contrast/toolbar/document-save?width=1&height=1", { 1, 1 }),
        address("AnAreaThatThereIsNot", "light/a%2Fb%20c/document-save?width=16&height=16", { 16, 16 }),
        address("TooWide", "light/document-save?width=1025&height=16"),
        address("NoHeight", "light/document-save?width=16"),
        address("NoNumber", "light/document-save?width=16&height=1e1"),
        address("Negative", "light/document-save?width=-16&height=16"),
        address("NoSkin", "none/document-save?width=16&height=16"),
        address("NoIcon", "light/none-such?width=16&height=16"),
        address("StepsUp", "light/..%2F..%2Factions%2F22%2Fdocument-save?width=16&height=16"),
        address("Deep", "light/a/b/document-save?width=16&height=16"),
        address("NoPath", "light?width=16&height=16"),
        AddressCase { "HugeQuery",
            QStringLiteral("light/document-save?width=16&height=16&a=") + QString(100000, QLatin1Char('a')),
            {} }),
    caseName<AddressCase>);

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

struct TypeCase {
    const char* type;
    bool hasOwn;
    bool hasAny;
    const char* extension; ///< one of them; null: there is none
};

TEST_F(SkinTest, FileTypesHaveIconsAndExtensions)
{
    const KFileFilter& filter = *KFileFilter::instance();
    const QString skin = QStringLiteral("dark");
    for (const TypeCase& expected : { TypeCase { "docx", true, true, "docx" }, { "DOC", true, true, "doc" },
             { "xlsx", true, true, "xlsx" }, { "pptx", false, true, "pptx" }, { "odt", true, true, "odt" },
             { "ods", true, true, "ods" }, { "odp", true, true, "odp" }, { "pdf", true, true, "pdf" },
             { "txt", true, true, "txt" }, { "csv", true, true, "csv" }, { "rtf", true, true, "rtf" },
             { "html", true, true, "htm" }, { "md", true, true, "md" }, { "jpg", true, true, "jpeg" },
             { "zip", true, true, "zip" }, { "docm", false, true, "docm" }, { "folder", true, true, nullptr },
             { "none-such", false, false, nullptr }, { "../x", false, false, nullptr },
             { "", false, false, nullptr } }) {
        const QString type = QString::fromLatin1(expected.type);
        EXPECT_EQ(filter.hasFileTypeIcon(type, skin, false), expected.hasOwn) << expected.type;
        EXPECT_EQ(filter.hasFileTypeIcon(type, skin, true), expected.hasAny) << expected.type;
        EXPECT_FALSE(filter.hasFileTypeIcon(type, QStringLiteral("none"), true));
        EXPECT_EQ(filter.fileTypeIcon(type) == QStringLiteral("unknown"), !expected.hasAny) << expected.type;
        EXPECT_FALSE(KDrawHelper::loadIcon(filter.fileTypeIcon(type)).isNull()) << expected.type;
        EXPECT_EQ(filter.extensions(type).contains(QString::fromLatin1(expected.extension)),
            expected.extension != nullptr)
            << expected.type;
    }
    useProfile(R"({"services": {"fileFilter": false}})");
    EXPECT_FALSE(KFileFilter::instance());
}

} // namespace
