// The text in which a document and the suite exchange values. One text is a sequence of these:
//
//   count    decimal digits and ";"
//   word     characters other than ";", and ";"
//   text     its length in UTF-16 units as a count, then the units, whatever they are
//   value    a letter, then
//              u undefined, n null, t true, f false
//              d a number as a word        b a 64-bit integer as a word      s a text
//              a count, values             o count, pairs of text and value
//              F count: the document's function of this number
//              h count: the native object of this number; to a document followed by the count of its class
//            and to a document only
//              e value: {data: value, success: true}                         j a text of JSON
//              p count: the promise of this number
//
// A text begins with "0"; or with "1" and the unit that stands for the zeros in what follows, since a zero would end it.
#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace engine::web {

/// Writes the parts of a text. [GUI thread]
class WireWriter {
public:
    void unit(char letter) { m_text += QLatin1Char(letter); }
    void count(std::uint64_t number);
    void word(const QString& word);
    void number(double number);
    void text(const QChar* units, std::size_t count);
    void text(const QString& text) { this->text(text.constData(), static_cast<std::size_t>(text.size())); }
    void append(const QString& written) { m_text += written; }

    const QString& written() const { return m_text; }
    QString take() { return std::exchange(m_text, {}); }

private:
    QString m_text;
};

/// Reads the parts of a text, which must outlive it and may be anything. After an error everything is empty or 0.
/// [GUI thread]
class WireReader {
public:
    explicit WireReader(const QString& text)
        : m_text(text)
    {
    }

    char unit();
    std::int64_t count();
    QStringView word();
    QStringView text();

    bool failed() const { return m_failed; }
    bool atEnd() const { return m_at >= m_text.size(); }

private:
    void fail();

    const QString& m_text;
    int m_at = 0;
    bool m_failed = false;
};

/// A text as it travels, and the other way round; nothing when it is no such text.
QString withoutZeros(const QString& text);
std::optional<QString> withZeros(const QString& travelled);

} // namespace engine::web
