#include "host/novahost/nearest.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace novahost {

int editDistance(const QString& from, const QString& to)
{
    std::vector<int> row(static_cast<std::size_t>(to.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 1; i <= from.size(); ++i) {
        int diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int replaced = diagonal + (from[i - 1] == to[static_cast<int>(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({ replaced, row[j] + 1, row[j - 1] + 1 });
        }
    }
    return row.back();
}

QString findNearest(const QString& wanted, const QStringList& names)
{
    QString nearest;
    int least = std::max(2, wanted.size() / 3 + 1);
    for (const QString& name : names) {
        // Of many names most differ too much in length alone.
        if (std::abs(name.size() - wanted.size()) >= least)
            continue;
        const int distance = editDistance(name.toLower(), wanted.toLower());
        if (distance < least) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace novahost
