// The log category "suite.plugins".
#pragma once

#include <QLoggingCategory>

namespace suite {

Q_DECLARE_LOGGING_CATEGORY(pluginLog)

} // namespace suite
