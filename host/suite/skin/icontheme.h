// Icons of an icon theme of the system, in the colours of the suite's theme.
#pragma once

#include "host/suite/skin/theme.h"

#include <QIcon>
#include <QImage>
#include <vector>

namespace suite {

/// The files of icons: those of Breeze, where it is installed.
class IconTheme {
public:
    struct File {
        int size; ///< for which it has been drawn
        QString path;
    };

    static const IconTheme& instance();
    /// The files of an icon, the smallest first; none when there is no such icon.
    std::vector<File> find(const QString& name) const;

private:
    IconTheme();

    std::vector<File> m_directories;
};

/// The icon, as large as it is asked for and in the colours of the theme at that time; a null one when there is none.
QIcon makeIcon(const QString& name);

/// Draws an icon in the colours of an area of a theme. Null when there is none. [GUI thread]
QImage drawIcon(const QString& name, const Theme& theme, const QString& area, const QSize& size);

} // namespace suite
