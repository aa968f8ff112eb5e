// Looking for sentences in the user's text files.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace panels {

struct Sentence {
    QString text;
    QString file; ///< the name of the file that it is in
};

/// The sentences that have most of the words of a question, the best ones first, at most `most`. Reads the files *.txt in a
/// directory: UTF-8, the first MiB of each, and not more than 200 of them. Words of one or two letters do not count.
std::vector<Sentence> findSentences(const QString& directory, const QString& question, int most);

} // namespace panels
