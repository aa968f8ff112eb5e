#include "host/plugins/wordcount/wordcount.h"

#include <QTextBoundaryFinder>

QVariantMap WordCount::count(const QVariantMap& given)
{
    const QString text = given.value(QStringLiteral("text")).toString();
    int words = 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    do {
        words += finder.boundaryReasons().testFlag(QTextBoundaryFinder::StartOfItem) ? 1 : 0;
    } while (finder.toNextBoundary() >= 0);
    return { { QStringLiteral("words"), words }, { QStringLiteral("characters"), text.size() } };
}
