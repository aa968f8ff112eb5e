// The suite's directories.
#pragma once

#include <QString>

namespace krt::dirs {

/// Where the suite is installed. [any thread]
QString officeInstallRoot();

/// True for an absolute path that is, or lies in, a directory into which pages may not write. Links are
/// followed as far as the path exists. [any thread]
bool inBlackDownloadDir(const QString& path);
} // namespace krt::dirs
