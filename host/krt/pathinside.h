// Whether a path leads into a directory, whatever links and parent steps it goes through.
#pragma once

#include <QString>

namespace krt {

/// True when `path` is `directory` or inside it; false when one of them is not absolute. Links are followed
/// as far as the path exists, broken ones to where they point. Parent steps are resolved in two ways, as the
/// system does (after a link: from its target) and lexically; one that leads inside is enough. A path through
/// a link that is itself inside counts as inside, wherever the link leads, since deleting the link changes
/// the directory. So does a path that gets too long to be followed. [any thread]
bool isPathInside(const QString& path, const QString& directory);

} // namespace krt
