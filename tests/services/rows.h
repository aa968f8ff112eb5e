// Tables of texts, a row on a line.
#pragma once

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <string>
#include <vector>

struct Row {
    std::string name;
    QString given;
    QString expected;
};

/// The rows of a table, "Name: given -> expected"; lines that begin with a blank, or are empty, go on with
/// the row before.
inline std::vector<Row> rows(const char* table)
{
    std::vector<Row> all;
    for (const QString& line : QString::fromUtf8(table).split(QLatin1Char('\n'))) {
        if (!line.isEmpty() && line[0] != QLatin1Char(' '))
            all.push_back({ line.section(QLatin1Char(':'), 0, 0).toStdString(),
                line.section(QLatin1Char(':'), 1).mid(1), {} });
        else if (!all.empty())
            all.back().given += QLatin1Char('\n') + line;
    }
    for (Row& row : all) {
        const QString text = QLatin1Char(' ') + row.given.trimmed() + QLatin1Char(' ');
        row.expected = text.mid(text.lastIndexOf(QLatin1String(" -> ")) + 4).trimmed();
        row.given.truncate(qMax(0, row.given.lastIndexOf(QLatin1String("->"))));
    }
    return all;
}

inline std::string rowName(const testing::TestParamInfo<Row>& info)
{
    return info.param.name;
}

/// For the messages of failed tests.
inline void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.given.toStdString();
}
