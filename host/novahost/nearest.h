// Names that are like one that somebody has mistyped.
#pragma once

#include <QStringList>

namespace novahost {

/// The number of characters to add, remove or replace.
int editDistance(const QString& from, const QString& to);

/// The one that is most like `wanted`, but for their case; empty when it is too different to be meant.
QString findNearest(const QString& wanted, const QStringList& names);

} // namespace novahost
