// The runtime library: who the suite is and where it runs.
#pragma once

#include <QString>

namespace krt {

/// The running application's name. [any thread]
QString appName();

/// The display scale: 1.0 is 96 dots per inch. [GUI thread]
double dpiScaled();

namespace info {
/// The platform the suite was built for, for example "linux". [any thread]
QString platform();
} // namespace info

namespace i18n {
/// The user interface's language. `format` 0 is the plain name ("en"), 1 the name with its region ("en_US"),
/// 2 the same with a hyphen ("en-US"); another format counts as 0. With `useCache` the answer may be the one
/// that held at the first call. [any thread]
QString language(int format, bool useCache);
} // namespace i18n
} // namespace krt
