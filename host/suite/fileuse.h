// What the system lets this process do with a file.
#pragma once

#include <QString>

namespace suite {

enum class FileUse { Exists, Reads, Writes };

/// Whether the process may use an absolute path in this way. A path that does not exist may be written to if
/// the nearest existing directory above may. A broken link can not be used at all. [any thread]
bool canUse(const QString& path, FileUse use);

/// Returns why no file can be written under this name, for the user; empty when it can. The directory must
/// exist. [any thread]
QString findWriteError(const QString& path);

} // namespace suite
