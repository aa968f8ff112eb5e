// Facts in the text of a contract.
#pragma once

#include <QString>
#include <QStringList>

namespace panels {

/// As they are written, in the order of the text, each once, at most 1000.
struct Facts {
    QStringList dates; ///< "2026-05-01", "1 May 2026", "May 1, 2026", "01.05.2026"
    QStringList sums;  ///< "EUR 1,200.50", "$5", "1.200 €"
};

/// Reads the first million characters.
Facts findFacts(const QString& text);

} // namespace panels
