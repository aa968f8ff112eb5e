// What this process may do with a file, as the system says.
#pragma once

#include <QString>

namespace suite {

enum class FileUse { Exists, Reads, Writes };

/// Whether the process may use an absolute path like this. Where nothing is yet, writing is up to the nearest
/// directory above that exists. A link that leads nowhere can not be used at all. [any thread]
bool processMay(const QString& path, FileUse use);

/// Empty when a file can be written under this name, now and in a directory that is there already; else what
/// is in the way, for the user. [any thread]
QString whyNotWritable(const QString& path);

} // namespace suite
