#include "krt/dirs.h"

#include "host/krt/pathinside.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"

namespace krt {

QString dirs::officeInstallRoot()
{
    return profile::expandPath(profile::current()->directories.officeInstallRoot);
}

QString dirs::officeData()
{
    return profile::expandPath(profile::current()->directories.officeData);
}

QString dirs::officeHome()
{
    return profile::expandPath(profile::current()->directories.officeHome);
}

QString dirs::velmoraHome()
{
    return profile::expandPath(profile::current()->directories.velmoraHome);
}

bool dirs::inBlackDownloadDir(const QString& path)
{
    static ProfilePlaces closed;
    const auto profile = profile::current();
    return closed.contain(
        path, profile->directories.blacklistedDownloads, { profile->directories.officeData });
}

} // namespace krt
