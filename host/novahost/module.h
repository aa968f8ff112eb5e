// Modules: scripts with import and export.
#pragma once

#include <QString>

namespace novahost {

/// Whether a script is a module: by the name of its file (".mjs"), or because it imports or exports and so can not be the body
/// of a function.
bool isModule(const QString& fileName, const QString& source);

} // namespace novahost
