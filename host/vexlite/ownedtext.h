// ownedText: a text that stays when the module it came from is unloaded.
#pragma once

#include <QString>

namespace vexlite {

/// `text` itself where it owns its characters, else a copy of them: literals and raw data have no capacity of
/// their own and point into whoever made them.
inline QString ownedText(const QString& text)
{
    return text.capacity() > 0 || text.isNull() ? text : QString(text.constData(), text.size());
}

} // namespace vexlite
