// Text of somebody else, such as a page, as it is put before a reader.
#pragma once

#include <QString>

namespace suite {

/// Escapes what would break a line or a field, or change the order or the look of what stands beside it: "\n", "\t",
/// "\\", and "\u2028" for other control and format characters and separators of lines, one escape for each unit of
/// UTF-16. [any thread]
QString escapeText(const QString& text);

/// A path for a question or a message: escaped, in quotation marks, and without its middle when it is long. [any
/// thread]
QString showPath(const QString& path);

} // namespace suite
