// Where the suite's plugins are downloaded to.
#pragma once

#include <QString>

namespace kpluginconfig {
/// True for an absolute path that is, or lies in, the plugin download directory. Links are followed as far as
/// the path exists. [any thread]
bool inPluginDownloadDir(const QString& path);
} // namespace kpluginconfig
