// The members that show a dialog and return when it has ended.
#pragma once

#include <QString>

namespace engine::web {

/// Whether the member of this name, "NovaExtension.FileSystem.getOpenFileName", runs an event loop until a dialog ends. Such
/// a call is made from the event loop, so that the pages of other windows go on; others are made within the page's request.
bool showsDialog(const QString& member);

} // namespace engine::web
