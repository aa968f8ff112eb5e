#include "krt/product.h"

#include "host/profile/profile.h"

namespace krt {

QString kcmc::value(const QString& section, const QString& option, bool* ok)
{
    const auto profile = profile::current();
    const auto entries = profile->product.strings.value(section);
    const auto entry = entries.constFind(option);
    const bool found = entry != entries.constEnd();
    if (ok)
        *ok = found;
    return found ? *entry : QString();
}

bool kcmc::support(const QString& feature)
{
    return profile::current()->product.features.value(feature, false);
}

namespace {

QVariant configuration(const QString& name, int selector)
{
    return profile::current()->product.configurations.value(QString::number(selector)).value(name);
}

} // namespace

QString configs::getString(const QString& name, int selector)
{
    return configuration(name, selector).toString();
}

int configs::getInt(const QString& name, int selector)
{
    return configuration(name, selector).toInt();
}

} // namespace krt
