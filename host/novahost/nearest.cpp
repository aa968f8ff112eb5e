#include "host/novahost/nearest.h"

#include <QFileInfo>
#include <algorithm>
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

/// The one within `most` changes.
QString nearestWithin(int most, const QStringList& names, const QString& wanted)
{
    QString found;
    int least = most + 1;
    const int dots = wanted.count(QLatin1Char('.'));
    for (const QString& name : names) {
        // As much of its end as was written.
        const QString end = name.section(QLatin1Char('.'), -1 - dots);
        const int distance = std::min(
            editDistance(name.toLower(), wanted.toLower()), editDistance(end.toLower(), wanted.toLower()));
        if (distance < least) {
            least = distance;
            found = name;
        }
    }
    return found;
}

} // namespace

QString nearest(const QStringList& names, const QString& wanted)
{
    return nearestWithin(std::clamp(wanted.size() / 3, 1, 3), names, wanted);
}

QString nearestFile(const QStringList& names, const QString& wanted)
{
    for (const QString& name : names) {
        if (QFileInfo(name).completeBaseName() == wanted)
            return name;
    }
    return nearestWithin(std::min(QFileInfo(wanted).completeBaseName().size() / 3, 3), names, wanted);
}

QString advise(const QStringList& names, const QString& wanted, const char* form, const char* otherwise)
{
    const QString name = nearest(names, wanted);
    return name.isEmpty() ? QString::fromUtf8(otherwise) : QString::fromUtf8(form).arg(name);
}

} // namespace novahost
