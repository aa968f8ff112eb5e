// The types of files that the suite knows, and their icons.
#pragma once

#include <QStringList>

/// A type is named by one of its extensions without the dot, such as "docx"; case does not matter. Its layout is the suite's
/// own, since only the functions below are called, none of them virtual. [GUI thread] for all; throws nothing.
class KFileFilter {
public:
    /// Owned by the suite. Null when there is none.
    static KFileFilter* instance();
    /// Whether the theme of a skin has an icon for a type of files; with `all`, one that other types share counts, too.
    bool hasFileTypeIcon(const QString& type, const QString& skin, bool all) const;
    /// The name of that icon (KDrawHelper::loadIcon); of the one for unknown files where the type has none.
    QString fileTypeIcon(const QString& type) const;
    /// The extensions of a type, without dots and in lower case; none for a type that the suite does not know.
    QStringList extensions(const QString& type) const;
};
