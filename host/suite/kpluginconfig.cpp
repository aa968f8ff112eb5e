#include "suite/kpluginconfig.h"

#include "host/krt/pathinside.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"

bool kpluginconfig::inPluginDownloadDir(const QString& path)
{
    return krt::isPathInside(path, profile::expandPath(profile::current()->directories.pluginDownloads));
}
