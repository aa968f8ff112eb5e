#include "suite/kdrawhelper.h"

#include "host/suite/skin/icontheme.h"
#include "host/suite/skin/skinimages.h"
#include "host/suite/skin/skinservice.h"

static const suite::Theme& currentTheme()
{
    return suite::SkinService::instance().current().theme;
}

QString KDrawHelper::getCurrentSkinNameFromTheme()
{
    return suite::SkinService::instance().current().name;
}

QColor KDrawHelper::getColorFromTheme(const QString& group, const QString& name, const QColor& fallback)
{
    return currentTheme().color(group, name, fallback);
}

QGradient KDrawHelper::getGradientFromTheme(
    const QString& group, const QString& name, const QGradient& fallback)
{
    return currentTheme().gradient(group, name, fallback);
}

int KDrawHelper::getHintFromTheme(const QString& group, const QString& name, int fallback)
{
    return currentTheme().hint(group, name, fallback);
}

QIcon KDrawHelper::loadIcon(const QString& name)
{
    return suite::makeIcon(name);
}

QString KDrawHelper::bindIconStyleColor(const QString& icon, const QString& themeArea)
{
    return suite::nameSkinImage(icon, themeArea);
}
