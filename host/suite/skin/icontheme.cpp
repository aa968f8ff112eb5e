#include "host/suite/skin/icontheme.h"

#include "host/suite/skin/skinservice.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QSvgRenderer>
#include <algorithm>

namespace suite {

namespace {

/// What the classes are in icons that follow a theme, and which colours of the theme they get.
constexpr struct {
    const char* icon;
    const char* group;
    const char* name;
} IconColors[] = {
    { "Background", "CommonPalette", "window" },
    { "ButtonBackground", "CommonPalette", "button" },
    { "ButtonFocus", "CommonPalette", "focusRing" },
    { "ButtonHover", "CommonThemePalette", "accentHover" },
    { "ButtonText", "CommonPalette", "buttonText" },
    { "Highlight", "CommonPalette", "highlight" },
    { "NegativeText", "CommonThemePalette", "error" },
    { "NeutralText", "CommonThemePalette", "warning" },
    { "PositiveText", "CommonThemePalette", "success" },
    { "ViewBackground", "CommonPalette", "base" },
    { "ViewFocus", "CommonPalette", "focusRing" },
    { "ViewHover", "CommonThemePalette", "accentHover" },
    { "ViewText", "CommonPalette", "text" },
};

QString makeStyleSheet(const Theme& theme, const QString& area)
{
    QString sheet;
    const auto add = [&](const char* name, const QColor& color) {
        // Opaque, since the renderer knows no others here.
        if (color.isValid())
            sheet += QStringLiteral(".ColorScheme-%1{color:%2}").arg(QLatin1String(name), color.name());
    };
    add("Text",
        theme.color(area, QStringLiteral("icon"), theme.color(CommonPalette, QStringLiteral("windowText"))));
    for (const auto& color : IconColors)
        add(color.icon, theme.color(QLatin1String(color.group), QLatin1String(color.name)));
    return sheet;
}

/// Draws what the suite has, from the event loop or while a widget is painted.
class IconEngine final : public QIconEngine {
public:
    explicit IconEngine(QString name)
        : m_name(std::move(name))
    {
    }

    QIconEngine* clone() const override { return new IconEngine(*this); }
    QString iconName() const override { return m_name; }
    QString key() const override { return QStringLiteral("nova-skin"); }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) const override
    {
        QList<QSize> sizes;
        for (const IconTheme::File& file : IconTheme::instance().find(m_name))
            sizes << QSize(file.size, file.size);
        return sizes;
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        return QPixmap::fromImage(drawIcon(m_name, SkinService::instance().current().theme, {}, size));
    }
    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(place, pixmap(place.size(), mode, state));
    }

private:
    QString m_name;
};

} // namespace

IconTheme::IconTheme()
{
    constexpr char Theme[] = "icons/breeze";
    const QString root = QStandardPaths::locate(
        QStandardPaths::GenericDataLocation, QString::fromLatin1(Theme), QStandardPaths::LocateDirectory);
    QSettings index(root + QStringLiteral("/index.theme"), QSettings::IniFormat);
    for (const QString& directory : index.value(QStringLiteral("Icon Theme/Directories")).toStringList()) {
        index.beginGroup(directory);
        const int size = index.value(QStringLiteral("Size")).toInt();
        if (size > 0 && index.value(QStringLiteral("Scale"), 1).toInt() == 1)
            m_directories.push_back({ size, root + QLatin1Char('/') + directory + QLatin1Char('/') });
        index.endGroup();
    }
    std::ranges::stable_sort(m_directories, {}, &File::size);
}

const IconTheme& IconTheme::instance()
{
    static const IconTheme theme;
    return theme;
}

std::vector<IconTheme::File> IconTheme::find(const QString& name) const
{
    // Pages choose the name: it leads to nothing outside.
    static const QRegularExpression form(QStringLiteral("^[A-Za-z0-9][A-Za-z0-9._+-]{0,127}$"));
    std::vector<File> files;
    if (!form.match(name).hasMatch())
        return files;
    for (const File& directory : m_directories) {
        const QString path = directory.path + name + QStringLiteral(".svg");
        if ((files.empty() || files.back().size != directory.size) && QFile::exists(path))
            files.push_back({ directory.size, path });
    }
    return files;
}

QIcon makeIcon(const QString& name)
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())
        || IconTheme::instance().find(name).empty())
        return {};
    return QIcon(new IconEngine(name));
}

QImage drawIcon(const QString& name, const Theme& theme, const QString& area, const QSize& size)
{
    const std::vector<IconTheme::File> files = IconTheme::instance().find(name);
    if (files.empty() || size.isEmpty())
        return {};
    // The drawing for this size, or else the next smaller one.
    const auto larger =
        std::ranges::upper_bound(files, qMin(size.width(), size.height()), {}, &IconTheme::File::size);
    QFile file((larger == files.begin() ? larger : std::prev(larger))->path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    static const QRegularExpression sheet(
        QStringLiteral(R"((<style[^>]*\bid="current-color-scheme[^"]*"[^>]*>)[^<]*)"));
    const QString drawing =
        QString::fromUtf8(file.readAll()).replace(sheet, QStringLiteral("\\1") + makeStyleSheet(theme, area));
    QSvgRenderer renderer(drawing.toUtf8());
    if (!renderer.isValid())
        return {};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSizeF drawn = renderer.defaultSize();
    drawn.scale(size, Qt::KeepAspectRatio);
    QRectF place(QPointF(), drawn);
    place.moveCenter(QRectF(image.rect()).center());
    renderer.render(&painter, place);
    return image;
}

} // namespace suite
