// The application's part for its theme, in its smallest form: no skins, no values, no icons.
#include <suite/kdrawhelper.h>
#include <suite/kfilefilter.h>
#include <suite/kskin.h>
#include <suite/kskinimageschemehandler.h>
#include <suite/kthemeloader.h>

QString KDrawHelper::getCurrentSkinNameFromTheme()
{
    return {};
}

QColor KDrawHelper::getColorFromTheme(const QString&, const QString&, const QColor& fallback)
{
    return fallback;
}

QGradient KDrawHelper::getGradientFromTheme(const QString&, const QString&, const QGradient& fallback)
{
    return fallback;
}

int KDrawHelper::getHintFromTheme(const QString&, const QString&, int fallback)
{
    return fallback;
}

QIcon KDrawHelper::loadIcon(const QString&)
{
    return {};
}

QString KDrawHelper::bindIconStyleColor(const QString&, const QString&)
{
    return {};
}

QString KSkinImageSchemeHandler::schemeName()
{
    return QStringLiteral("embed-skin");
}

class KThemeLoaderPrivate { };

KThemeLoader::KThemeLoader() = default;
KThemeLoader::~KThemeLoader() = default;

bool KThemeLoader::load(const QString&)
{
    return false;
}

QString KThemeLoader::value(const QString&, const QString&) const
{
    return {};
}

KFileFilter* KFileFilter::instance()
{
    return nullptr;
}

// Without a filter, or a child object of the application that is a KSkin, none of these is called.

bool KFileFilter::hasFileTypeIcon(const QString&, const QString&, bool) const
{
    return false;
}

QString KFileFilter::fileTypeIcon(const QString&) const
{
    return {};
}

QStringList KFileFilter::extensions(const QString&) const
{
    return {};
}

QString KSkin::getUserId() const
{
    return {};
}

bool KSkin::setUserUsingSkin(const QString&, const QString&, const QStringList&)
{
    return false;
}

void KSkin::addCurrentUserSkinHistory(const QString&) { }
