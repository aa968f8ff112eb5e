// The log category "suite.cloud".
#pragma once

#include <QLoggingCategory>

namespace suite {

Q_DECLARE_LOGGING_CATEGORY(cloudLog)

} // namespace suite
