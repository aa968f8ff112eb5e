// The text in which a document and the suite exchange values. One text is a sequence of these:
//
//   count    decimal digits and ";"
//   word     characters other than ";", and ";"
//   text     its length in UTF-16 units, ";" and the units; or, when it has zeros, which would end the whole, its length, ":",
//            a unit that it does not have, and the units with that one in place of the zeros; or, when it has all that
//            could stand for them, a count, "+", and so many texts of the two forms above, which are its pieces
//   value    a letter, then
//              u undefined, n null, t true, f false
//              d a number as a word        b a 64-bit integer as a word      s a text
//              a count, values             o count, pairs of text and value
//              x so many bytes as a count, and a unit for each: 0x100 + the byte, so that none is zero
//              F count: the document's function of this number
//              h count: the native object of this number; to a document followed by the count of its class
//            and to a document only
//              e value: {data: value, success: true}                         j a text of JSON
//              p count: the promise of this number
//
// A reply is the answer, then classes and messages, each a count and so many of them, which the document reads first; then ";"
// and the place of the classes in decimal digits: so a long answer need not be copied to come after what is made last.
#pragma once

#include <QString>
#include <cstdint>

namespace engine::web {

/// Writes every unit, unlike std::replace, so that compilers take many at a time.
void replaceUnits(char16_t* units, std::size_t count, char16_t unit, char16_t by);

/// What a reply has as one count and so many: classes, or messages.
struct WireBatch {
    QString text;
    std::uint64_t count = 0;

    void add(const QString& written)
    {
        text += written;
        ++count;
    }
};

/// Writes the parts of a text. [GUI thread]
class WireWriter {
public:
    WireWriter() = default;
    explicit WireWriter(QString begun)
        : m_text(std::move(begun))
    {
    }

    void unit(char letter) { m_text += QLatin1Char(letter); }
    void count(std::uint64_t number);
    void word(const QString& word);
    void number(double number);
    void text(const QChar* units, std::size_t count);
    void bytes(const std::uint8_t* bytes, std::size_t count);
    void text(const QString& text) { this->text(text.constData(), static_cast<std::size_t>(text.size())); }
    /// Makes what is written, an answer, a whole reply.
    void endReply(const WireBatch& classes, const WireBatch& messages);

    const QString& written() const { return m_text; }
    QString take() { return std::exchange(m_text, {}); }

private:
    QString m_text;
};

/// A text as it was written.
struct WireText {
    QStringView units;
    QChar standIn;  ///< for the zeros; 0: there are none
    QString joined; ///< what the units lie in when the text came in pieces

    QString toString() const;
    bool isEmpty() const { return units.isEmpty(); }
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
    std::int64_t count() { return countUntil(QLatin1Char(';')); }
    QStringView word() { return wordUntil(QLatin1Char(';')); }
    WireText text();
    QByteArray bytes();

    bool failed() const { return m_failed; }
    bool atEnd() const { return m_at >= m_text.size(); }

private:
    void fail();
    WireText piece();
    QChar markAfterDigits() const;
    QStringView wordUntil(QChar mark);
    std::int64_t countUntil(QChar mark);

    const QString& m_text;
    int m_at = 0;
    bool m_failed = false;
};

} // namespace engine::web
