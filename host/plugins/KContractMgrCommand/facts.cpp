#include "host/plugins/KContractMgrCommand/facts.h"

#include <QRegularExpression>

namespace panels {

namespace {

constexpr int MaxText = 1'000'000;
constexpr int MaxFacts = 1000;

#define MONTH "(?:January|February|March|April|May|June|July|August|September|October|November|December)"
#define CURRENCY "(?:[$€£]|\\b(?:EUR|USD|GBP|CHF)\\b)"
#define AMOUNT "\\d{1,3}(?:[.,' ]\\d{3}){0,5}(?:[.,]\\d{1,2})?(?!\\d)|\\d{1,15}(?:[.,]\\d{1,2})?(?!\\d)"

constexpr auto Dates = "\\b\\d{4}-\\d{2}-\\d{2}\\b|\\b\\d{1,2}\\.\\d{1,2}\\.\\d{4}\\b|"
                       "\\b\\d{1,2} " MONTH " \\d{4}\\b|\\b" MONTH " \\d{1,2}, \\d{4}\\b";
constexpr auto Sums = CURRENCY " ?(?:" AMOUNT ")|(?<!\\d)(?:" AMOUNT ") ?" CURRENCY;

QStringList findAll(const QString& text, const char* pattern)
{
    QStringList found;
    const QRegularExpression expression(QString::fromUtf8(pattern));
    for (auto match = expression.globalMatch(text); match.hasNext() && found.size() < MaxFacts;) {
        const QString fact = match.next().captured();
        if (!found.contains(fact))
            found << fact;
    }
    return found;
}

} // namespace

Facts findFacts(const QString& text)
{
    const QString read = text.left(MaxText);
    return { findAll(read, Dates), findAll(read, Sums) };
}

} // namespace panels
