// Images of the suite's theme by their addresses.
#pragma once

#include <QString>

/// Serves SCHEME://NAME?width=W&height=H to all pages: an image of W by H physical pixels. NAME is what
/// KDrawHelper::bindIconStyleColor returns, and the image has the colours of the theme that was current then; anything else in
/// the query is ignored.
class KSkinImageSchemeHandler {
public:
    /// Constant. [any thread]
    static QString schemeName();
};
