#include "krt/krt.h"

#include "host/profile/profile.h"

namespace krt {

QString appName()
{
    return profile::current()->application.name;
}

double dpiScaled()
{
    return profile::current()->dpi.scale;
}

QString info::platform()
{
    return profile::current()->application.platform;
}

QString i18n::language(int format, bool useCache)
{
    // Cached by the first call, whether or not that one wants the cached value.
    static const profile::Language first = profile::current()->language;
    const profile::Language language = useCache ? first : profile::current()->language;
    if (language.region.isEmpty() || (format != 1 && format != 2))
        return language.name;
    return language.name + QLatin1Char(format == 1 ? '_' : '-') + language.region;
}

} // namespace krt
