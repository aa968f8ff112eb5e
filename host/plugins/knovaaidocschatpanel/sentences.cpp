#include "host/plugins/knovaaidocschatpanel/sentences.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

namespace panels {

namespace {

constexpr int MaxFiles = 200;
constexpr qint64 MaxBytes = qint64 { 8 } << 20; ///< of all files: they are read on the GUI thread
constexpr int ShortestWord = 3;

QSet<QString> wordsOf(const QString& text)
{
    static const QRegularExpression between(QStringLiteral("[^\\p{L}\\p{N}]+"));
    QSet<QString> words;
    const QStringList parts = text.toCaseFolded().split(between, Qt::SkipEmptyParts);
    for (const QString& word : parts) {
        if (word.size() >= ShortestWord)
            words.insert(word);
    }
    return words;
}

QStringList sentencesOf(const QString& text)
{
    static const QRegularExpression end(QStringLiteral("(?<=[.!?])\\s+|\\n\\s*\\n"));
    QStringList sentences = text.split(end, Qt::SkipEmptyParts);
    for (QString& sentence : sentences)
        sentence = sentence.simplified();
    return sentences;
}

} // namespace

std::vector<Sentence> findSentences(const QString& directory, const QString& question, int most)
{
    struct Found {
        Sentence sentence;
        int words;
    };
    const QSet<QString> wanted = wordsOf(question);
    std::vector<Found> found;
    const QStringList files =
        QDir(directory).entryList({ QStringLiteral("*.txt") }, QDir::Files | QDir::Readable, QDir::Name);
    qint64 left = MaxBytes;
    for (const QString& name : files.mid(0, MaxFiles)) {
        QFile file(directory + QLatin1Char('/') + name);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.read(left);
        left -= bytes.size();
        const QStringList sentences = sentencesOf(QString::fromUtf8(bytes));
        for (const QString& sentence : sentences) {
            if (const int words = wordsOf(sentence).intersect(wanted).size(); words > 0)
                found.push_back({ { sentence, name }, words });
        }
    }
    std::stable_sort(
        found.begin(), found.end(), [](const Found& a, const Found& b) { return a.words > b.words; });
    std::vector<Sentence> best;
    for (std::size_t i = 0; i < std::min(found.size(), static_cast<std::size_t>(most)); ++i)
        best.push_back(std::move(found[i].sentence));
    return best;
}

} // namespace panels
