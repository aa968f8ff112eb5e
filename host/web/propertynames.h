// Finds out what may be completed in a document.
#pragma once

#include <QStringList>

namespace engine::web {

/// A script whose value is the names of the properties that Page::propertyNames() looks for. It runs no getters of the page's
/// own; the traps of a proxy it does run.
QString propertyNamesSource(QStringList path);

} // namespace engine::web
