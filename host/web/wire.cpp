#include "host/web/wire.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>

namespace engine::web {

namespace {

// Those that are for private use; a piece is too short to have them all.
constexpr char16_t FirstStandIn = 0xE000;
constexpr std::size_t StandIns = 6400;
constexpr std::size_t PieceUnits = 6000;

/// A unit that the text does not have; 0 when it has all.
char16_t findStandIn(QStringView text)
{
    std::bitset<StandIns> used;
    for (const QChar unit : text) {
        const std::size_t place = static_cast<std::size_t>(unit.unicode()) - FirstStandIn;
        if (place < StandIns)
            used.set(place);
    }
    std::size_t free = 0;
    while (free < StandIns && used[free])
        ++free;
    return free < StandIns ? static_cast<char16_t>(FirstStandIn + free) : u'\0';
}

} // namespace

void replaceUnits(char16_t* units, std::size_t count, char16_t unit, char16_t by)
{
    for (std::size_t i = 0; i < count; ++i)
        units[i] = units[i] == unit ? by : units[i];
}

void WireWriter::count(std::uint64_t number)
{
    m_text += QString::number(number);
    m_text += QLatin1Char(';');
}

void WireWriter::word(const QString& word)
{
    m_text += word;
    m_text += QLatin1Char(';');
}

void WireWriter::number(double number)
{
    std::array<char, 32> digits {};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    const QLatin1String text(digits.data(), static_cast<int>(end - digits.data()));
    // As script reads them.
    if (text == QLatin1String("inf"))
        m_text += QLatin1String("Infinity");
    else if (text == QLatin1String("-inf"))
        m_text += QLatin1String("-Infinity");
    else if (text.endsWith(QLatin1String("nan")))
        m_text += QLatin1String("NaN");
    else
        m_text += text;
    m_text += QLatin1Char(';');
}

void WireWriter::text(const QChar* units, std::size_t count)
{
    const QStringView view(units, static_cast<qsizetype>(count));
    if (!view.contains(QChar(0))) {
        this->count(count);
        m_text.append(units, static_cast<int>(count));
        return;
    }
    const char16_t standIn = findStandIn(view);
    if (!standIn) {
        m_text += QString::number((count + PieceUnits - 1) / PieceUnits);
        m_text += QLatin1Char('+');
        for (std::size_t at = 0; at < count; at += PieceUnits)
            text(units + at, std::min(PieceUnits, count - at));
        return;
    }
    m_text += QString::number(count);
    m_text += QLatin1Char(':');
    m_text += QChar(standIn);
    const int begin = m_text.size();
    m_text.append(units, static_cast<int>(count));
    replaceUnits(reinterpret_cast<char16_t*>(m_text.data()) + begin, count, u'\0', standIn);
}

void WireWriter::bytes(const std::uint8_t* bytes, std::size_t count)
{
    this->count(count);
    const int begin = m_text.size();
    m_text.resize(begin + static_cast<int>(count));
    auto* units = reinterpret_cast<char16_t*>(m_text.data()) + begin;
    for (std::size_t i = 0; i < count; ++i)
        units[i] = static_cast<char16_t>(0x100 + bytes[i]);
}

void WireWriter::endReply(const WireBatch& classes, const WireBatch& messages)
{
    const int place = m_text.size();
    for (const WireBatch* batch : { &classes, &messages }) {
        count(batch->count);
        m_text += batch->text;
    }
    m_text += QLatin1Char(';') + QString::number(place);
}

QString WireText::toString() const
{
    QString made = units.toString();
    if (!standIn.isNull())
        made.replace(standIn, QChar(0));
    return made;
}

void WireReader::fail()
{
    m_failed = true;
    m_at = m_text.size();
}

char WireReader::unit()
{
    if (!atEnd())
        return m_text[m_at++].toLatin1();
    fail();
    return 0;
}

QStringView WireReader::wordUntil(QChar mark)
{
    const int end = m_text.indexOf(mark, m_at);
    if (end < 0) {
        fail();
        return {};
    }
    const QStringView word = QStringView(m_text).mid(m_at, end - m_at);
    m_at = end + 1;
    return word;
}

std::int64_t WireReader::countUntil(QChar mark)
{
    constexpr int MaximumDigits = 18;
    const QStringView digits = wordUntil(mark);
    std::int64_t number = 0;
    for (const QChar digit : digits) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9') || digits.size() > MaximumDigits) {
            fail();
            return 0;
        }
        number = number * 10 + digit.unicode() - '0';
    }
    if (digits.isEmpty())
        fail();
    return number;
}

QChar WireReader::markAfterDigits() const
{
    int end = m_at;
    while (end < m_text.size() && m_text[end] >= QLatin1Char('0') && m_text[end] <= QLatin1Char('9'))
        ++end;
    return end < m_text.size() ? m_text[end] : QChar(0);
}

WireText WireReader::text()
{
    if (markAfterDigits() != QLatin1Char('+'))
        return piece();
    WireText whole;
    for (std::int64_t count = countUntil(QLatin1Char('+')); count > 0 && !m_failed; --count)
        whole.joined += piece().toString();
    whole.units = whole.joined;
    return whole;
}

QByteArray WireReader::bytes()
{
    const std::int64_t size = count();
    if (m_failed || size > m_text.size() - m_at) {
        fail();
        return {};
    }
    QByteArray made(static_cast<int>(size), Qt::Uninitialized);
    const char16_t* units = reinterpret_cast<const char16_t*>(m_text.utf16()) + m_at;
    char* bytes = made.data();
    for (std::int64_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(units[i]);
    m_at += static_cast<int>(size);
    return made;
}

WireText WireReader::piece()
{
    const bool hasZeros = markAfterDigits() == QLatin1Char(':');
    const std::int64_t size = countUntil(QLatin1Char(hasZeros ? ':' : ';'));
    const QChar standIn = hasZeros && !atEnd() ? m_text[m_at++] : QChar(0);
    if (m_failed || size > m_text.size() - m_at) {
        fail();
        return {};
    }
    const QStringView units = QStringView(m_text).mid(m_at, static_cast<int>(size));
    m_at += static_cast<int>(size);
    return { units, standIn, {} };
}

} // namespace engine::web
