// Advice to whom has written a name that there is not.
#pragma once

#include <QStringList>

namespace novahost {

/// The one that `wanted` misspells, or that ends with it; empty when there is none.
QString nearestSpelling(const QStringList& names, const QString& wanted);

/// The same, or the only one that has its words and hardly others: "logInfo" for "info", "isDir" for "isDirectory".
QString nearest(const QStringList& names, const QString& wanted);

/// The file that has one extension more, or is written much like it: files of one folder resemble each other.
QString nearestFile(const QStringList& names, const QString& wanted);

/// `form`, such as "did you mean %1?", with the nearest name; `otherwise` when there is none.
QString advise(const QStringList& names, const QString& wanted, const char* form, const char* otherwise);

} // namespace novahost
