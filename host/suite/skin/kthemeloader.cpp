#include "suite/kthemeloader.h"

#include "host/suite/showntext.h"
#include "host/suite/skin/skinservice.h"

#include <QLoggingCategory>

class KThemeLoaderPrivate {
public:
    suite::Theme theme = suite::SkinService::instance().current().theme;
};

KThemeLoader::KThemeLoader()
    : d(std::make_unique<KThemeLoaderPrivate>())
{
}

KThemeLoader::~KThemeLoader() = default;

bool KThemeLoader::load(const QString& path)
{
    static const QLoggingCategory log("suite.skin");
    const QStringList errors = d->theme.load(path);
    constexpr int MostShown = 20;
    for (const QString& error : errors.mid(0, MostShown))
        qCWarning(log, "%s: %s", qPrintable(path), qPrintable(suite::escapeText(error)));
    return errors.isEmpty();
}

QString KThemeLoader::value(const QString& group, const QString& name) const
{
    return d->theme.css(group, name);
}
