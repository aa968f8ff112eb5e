// The directory of the stand-in suite's state, and the paths of the profile.
#pragma once

#include <QString>

namespace profile {

// All calls [any thread].

/// Sets the directory of all state, and makes it if it is missing; an empty path means a new temporary one.
/// Returns the error, or an empty string; after an error the former directory stays.
QString setDataDirectory(const QString& directory);
/// The data directory, absolute. By default a temporary one, which is made at the first use and removed when
/// the process ends; empty when it can not be made.
QString dataDirectory();
/// Whether dataDirectory() is removed when the process ends.
bool isDataTemporary();

/// Replaces the variables ${DATA} and ${HOME} of a path in the profile, and cleans it; empty for an empty
/// path.
QString expandPath(const QString& path);

} // namespace profile
