#include "suite/kpluginconfig.h"

#include "host/krt/pathinside.h"
#include "host/profile/profile.h"

bool kpluginconfig::inPluginDownloadDir(const QString& path)
{
    static krt::ProfilePlaces plugins;
    return plugins.contain(path, { profile::current()->directories.pluginDownloads });
}
