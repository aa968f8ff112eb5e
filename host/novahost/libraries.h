// Finds the libraries that belong to this program.
#pragma once

#include <QString>

namespace novahost {

/// The path of a library: in the build tree, in the folder `installed` ("lib/x86_64-linux-gnu") of the install tree, or beside
/// this program. Empty when there is none.
QString findLibrary(const QString& name, const QString& installed);

} // namespace novahost
