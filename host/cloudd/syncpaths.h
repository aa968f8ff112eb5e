// Paths of files in a sync folder, relative to it: names separated by "/".
#pragma once

#include <QString>

namespace cloudd {

/// Empty for what lies in the folder itself.
inline QString parentOf(const QString& path)
{
    return path.left(qMax(0, path.lastIndexOf(QLatin1Char('/'))));
}

inline QString nameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

inline QString joinPath(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
}

} // namespace cloudd
