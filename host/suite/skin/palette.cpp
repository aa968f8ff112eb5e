#include "host/suite/skin/palette.h"

#include "host/suite/web/webwidget.h"
#include "host/vexlite/webwidgets.h"

#include <QApplication>
#include <QFile>
#include <QToolTip>

namespace suite {

namespace {

struct Role {
    QPalette::ColorRole role;
    const char* name;     ///< in the theme
    const char* disabled; ///< null: the same
};

constexpr Role Roles[] = {
    { QPalette::Window, "window", nullptr },
    { QPalette::WindowText, "windowText", "disabledText" },
    { QPalette::Base, "base", "disabledBase" },
    { QPalette::AlternateBase, "alternateBase", nullptr },
    { QPalette::Text, "text", "disabledText" },
    { QPalette::PlaceholderText, "placeholderText", "disabledText" },
    { QPalette::Button, "button", nullptr },
    { QPalette::ButtonText, "buttonText", "disabledText" },
    { QPalette::BrightText, "highlightedText", nullptr },
    { QPalette::Highlight, "highlight", "inactiveHighlight" },
    { QPalette::HighlightedText, "highlightedText", "disabledText" },
    { QPalette::Link, "link", "disabledText" },
    { QPalette::LinkVisited, "linkVisited", "disabledText" },
    { QPalette::ToolTipBase, "tooltip", nullptr },
    { QPalette::ToolTipText, "tooltipText", nullptr },
    // The frames that styles draw.
    { QPalette::Light, "base", nullptr },
    { QPalette::Midlight, "divider", nullptr },
    { QPalette::Mid, "border", nullptr },
    { QPalette::Dark, "strongBorder", nullptr },
    { QPalette::Shadow, "strongBorder", nullptr },
};

/// Empty where the palette says all.
QString makeStyleSheet(const Skin& skin)
{
    QFile file(QStringLiteral(":/novaskin/highcontrast.qss"));
    if (skin.theme.hint(CommonPalette, QStringLiteral("isHighContrast"), 0) == 0
        || !file.open(QIODevice::ReadOnly))
        return {};
    QString sheet = QString::fromUtf8(file.readAll());
    const auto put = [&](const char* name, const QString& value) {
        sheet.replace(QLatin1Char('@') + QLatin1String(name) + QLatin1Char('@'), value);
    };
    for (const char* name :
        { "border", "focusRing", "disabledText", "highlight", "highlightedText", "window", "windowText" })
        put(name, skin.theme.color(CommonPalette, QString::fromLatin1(name), Qt::gray).name());
    put("borderWidth", QString::number(skin.theme.hint(CommonPalette, QStringLiteral("borderWidth"), 1)));
    return sheet;
}

} // namespace

QPalette makePalette(const Skin& skin)
{
    QPalette palette;
    for (const Role& role : Roles) {
        const auto set = [&](QPalette::ColorGroup group, const char* name) {
            const QColor color = skin.theme.color(CommonPalette, QString::fromLatin1(name));
            if (color.isValid())
                palette.setColor(group, role.role, color);
        };
        set(QPalette::All, role.name);
        if (role.disabled)
            set(QPalette::Disabled, role.disabled);
    }
    return palette;
}

void showInWindows(const Skin& skin)
{
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        return;
    const QPalette palette = makePalette(skin);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
    if (const QString sheet = makeStyleSheet(skin); sheet != application->styleSheet())
        application->setStyleSheet(sheet);
    for (KJsApiWebWidget* widget : vexlite::webWidgets())
        KJsApiWebWidgetPrivate::of(*widget).followTheme();
}

} // namespace suite
