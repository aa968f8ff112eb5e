// Where the stand-in suite keeps its state, and how the profile's paths are read.
#pragma once

#include <QString>

namespace profile {

// All calls [any thread].

/// Sets the directory below which all state lies, making it where there is none; an empty path means a fresh
/// temporary one again. Returns an empty text, or why the directory can not be used; the former one then
/// stays.
QString setDataDirectory(const QString& directory);
/// The data directory, absolute. Without one set, a temporary one that is made at the first use and removed
/// when the process ends; empty when even that can not be made.
QString dataDirectory();
/// Whether dataDirectory() goes when the process ends.
bool isDataTemporary();

/// A path of the profile with the variables ${DATA} and ${HOME} replaced, absolute and cleaned; empty for an
/// empty path.
QString expanded(const QString& path);

} // namespace profile
