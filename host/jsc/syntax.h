// Checks scripts without running them.
#pragma once

#include <QString>

namespace engine::jsc {

/// Whether a text is a script without errors of syntax. [GUI thread]
bool compiles(const QString& source);

} // namespace engine::jsc
