#include "host/novahost/nearest.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace novahost {

namespace {

/// The number of characters to add, remove, replace or exchange with the next.
int editDistance(const QString& from, const QString& to)
{
    const auto width = static_cast<std::size_t>(to.size()) + 1;
    std::vector<int> before(width), row(width), next(width);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 1; i <= from.size(); ++i) {
        next[0] = i;
        for (std::size_t j = 1; j < width; ++j) {
            const int at = static_cast<int>(j) - 1;
            next[j] = std::min({ row[j - 1] + (from[i - 1] == to[at] ? 0 : 1), row[j] + 1, next[j - 1] + 1 });
            if (i > 1 && j > 1 && from[i - 1] == to[at - 1] && from[i - 2] == to[at])
                next[j] = std::min(next[j], before[j - 2] + 1);
        }
        before.swap(row);
        row.swap(next);
    }
    return row.back();
}

constexpr int NoMatch = std::numeric_limits<int>::max();
constexpr int Change = 2;    ///< the cost of one, of a character or a whole word
constexpr int Shortened = 1; ///< of a word whose beginning the other is: "directory" and "dir"

/// The words of "getUserID", "Log.logInfo" and "--live-counts", in lower case.
QStringList wordsOf(const QString& name)
{
    static const QRegularExpression word(QStringLiteral("[A-Z]+(?![a-z])|[A-Z]?[a-z]+|[0-9]+"));
    QStringList words;
    for (auto matches = word.globalMatch(name); matches.hasNext();)
        words.append(matches.next().captured().toLower());
    return words;
}

/// Words of many names, which alone make none of them alike.
bool isVerb(const QString& word)
{
    static const QSet<QString> verbs { QStringLiteral("get"), QStringLiteral("set"), QStringLiteral("is"),
        QStringLiteral("has"), QStringLiteral("add"), QStringLiteral("remove") };
    return verbs.contains(word);
}

/// What two names have of each other's words.
struct SharedWords {
    QStringList ofName, ofWanted; ///< those that the other has not
    bool hasNoun = false;         ///< in common
    int cost = 0;

    SharedWords(const QStringList& name, const QStringList& wanted)
        : ofName(name)
        , ofWanted(wanted)
    {
        share([](const QString& one, const QString& other) { return one == other; }, 0);
        share(
            [](const QString& one, const QString& other) {
                constexpr int Least = 3;
                return std::min(one.size(), other.size()) >= Least
                    && (one.startsWith(other) || other.startsWith(one));
            },
            Shortened);
    }

private:
    template <typename Same> void share(const Same& same, int price)
    {
        for (int i = ofWanted.size() - 1; i >= 0; --i) {
            const auto found = std::find_if(
                ofName.begin(), ofName.end(), [&](const QString& word) { return same(word, ofWanted[i]); });
            if (found == ofName.end())
                continue;
            hasNoun = hasNoun || !isVerb(*found);
            cost += price;
            ofName.erase(found);
            ofWanted.removeAt(i);
        }
    }
};

/// By whole words: `wanted` lacks one of them, has a "get" or something at its end too many, or shortens one. NoMatch, too,
/// where only the verbs differ: who wants to read means no member that writes.
int wordCost(const QString& name, const QString& wanted)
{
    const QStringList words = wordsOf(wanted);
    const SharedWords shared(wordsOf(name), words);
    const int changes = shared.ofName.size() + shared.ofWanted.size();
    const int cost = changes * Change + shared.cost;
    if (!shared.hasNoun || changes > 1 || cost == 0)
        return NoMatch;
    // "resize" is no "setResizeable".
    if (!shared.ofName.isEmpty() && isVerb(shared.ofName.first()) && shared.cost > 0)
        return NoMatch;
    // "copyFile" is "copy", but "readFile" no "File", nor is "fileExists".
    const bool isMore = !shared.ofWanted.isEmpty() && shared.ofWanted.first() != QLatin1String("get");
    if (isMore && (shared.ofWanted.first() != words.last() || wanted[0].isUpper() != name[0].isUpper()))
        return NoMatch;
    return cost;
}

/// Whether whole words make the difference of `changes` characters, so that nothing is misspelt.
bool differInWords(const QString& name, const QString& wanted, int changes)
{
    const QStringList words = wordsOf(name), wantedWords = wordsOf(wanted);
    const SharedWords shared(words, wantedWords);
    if (shared.ofName.isEmpty() != shared.ofWanted.isEmpty())
        return true;
    if (words.size() != wantedWords.size() && changes > 1)
        return true;
    return shared.ofName.size() == 1 && shared.ofWanted.size() == 1 && isVerb(shared.ofName.first())
        && isVerb(shared.ofWanted.first());
}

/// The name with the least cost, if one has.
struct Found {
    QString name;
    int cost = NoMatch;
    bool isOnly = true; ///< with this cost

    void offer(const QString& offered, int price)
    {
        if (price > cost || price == NoMatch)
            return;
        isOnly = price < cost;
        if (isOnly) {
            name = offered;
            cost = price;
        }
    }
};

/// As much of the end of a name as was written.
QString endOf(const QString& name, const QString& wanted)
{
    return name.section(QLatin1Char('.'), -1 - wanted.count(QLatin1Char('.')));
}

/// The first of those that are written most alike, within `most` changes.
Found findSpelling(int most, const QStringList& names, const QString& wanted)
{
    Found found;
    for (const QString& name : names) {
        for (const QString& form : { name, endOf(name, wanted) }) {
            const int changes = editDistance(form.toLower(), wanted.toLower());
            if (changes == 0 || (changes <= most && !differInWords(form, wanted, changes)))
                found.offer(name, changes * Change);
        }
    }
    return found;
}

int mostChanges(const QString& wanted)
{
    return std::clamp(wanted.size() / 3, 1, 3);
}

} // namespace

QString nearestSpelling(const QStringList& names, const QString& wanted)
{
    return findSpelling(mostChanges(wanted), names, wanted).name;
}

QString nearest(const QStringList& names, const QString& wanted)
{
    const Found spelt = findSpelling(mostChanges(wanted), names, wanted);
    Found worded;
    for (const QString& name : names)
        worded.offer(name, wordCost(endOf(name, wanted), wanted));
    return worded.cost < spelt.cost && worded.isOnly ? worded.name : spelt.name;
}

QString nearestFile(const QStringList& names, const QString& wanted)
{
    for (const QString& name : names) {
        if (QFileInfo(name).completeBaseName() == wanted)
            return name;
    }
    return findSpelling(std::min(QFileInfo(wanted).completeBaseName().size() / 3, 3), names, wanted).name;
}

QString advise(const QStringList& names, const QString& wanted, const char* form, const char* otherwise)
{
    const QString name = nearest(names, wanted);
    return name.isEmpty() ? QString::fromUtf8(otherwise) : QString::fromUtf8(form).arg(name);
}

} // namespace novahost
