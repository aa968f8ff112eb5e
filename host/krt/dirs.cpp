#include "krt/dirs.h"

#include "host/krt/pathinside.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <algorithm>

namespace krt {

QString dirs::officeInstallRoot()
{
    return profile::expanded(profile::current()->directories.officeInstallRoot);
}

bool dirs::inBlackDownloadDir(const QString& path)
{
    const auto profile = profile::current();
    const QStringList& directories = profile->directories.blacklistedDownloads;
    return std::any_of(directories.begin(), directories.end(),
        [&](const QString& directory) { return isPathInside(path, profile::expanded(directory)); });
}

} // namespace krt
