// makeOwnedText: a string that stays valid when the module it came from is unloaded.
#pragma once

#include <QString>

namespace vexlite {

/// `text` itself if it owns its characters, else a copy: literals and raw data, whose capacity is 0, point
/// into the module.
inline QString makeOwnedText(const QString& text)
{
    return text.capacity() > 0 || text.isNull() ? text : QString(text.constData(), text.size());
}

} // namespace vexlite
