#include "host/suite/skin/palette.h"

#include "host/suite/web/webwidget.h"
#include "host/vexlite/webwidgets.h"

#include <QApplication>
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
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    const QPalette palette = makePalette(skin);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
    for (KJsApiWebWidget* widget : vexlite::webWidgets())
        KJsApiWebWidgetPrivate::of(*widget).followTheme();
}

} // namespace suite
