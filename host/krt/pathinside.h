// Whether a path leads into a directory, whatever links and parent steps it goes through.
#pragma once

#include <QString>

namespace krt {

/// True when `path` is `directory` or lies in it; false when one of them is not absolute. Links are followed
/// as far as the path exists, broken ones to where they point; the rest counts as written. Parent steps are
/// taken both as the system takes them (behind a link: from its target) and as a path cleaned before use has
/// them: one way in is enough. A way through a link that itself lies in the directory is one, wherever the
/// link leads: deleting it would change the directory. So is a way that gets longer than a path may be, which
/// can not be followed. [any thread]
bool isPathInside(const QString& path, const QString& directory);

} // namespace krt
