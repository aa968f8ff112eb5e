#include "host/web/wire.h"

#include <array>
#include <charconv>

namespace engine::web {

namespace {

constexpr char16_t FirstStandIn = 0xE000;

} // namespace

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
    this->count(count);
    m_text.append(units, static_cast<int>(count));
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

QStringView WireReader::word()
{
    const int end = m_text.indexOf(QLatin1Char(';'), m_at);
    if (end < 0) {
        fail();
        return {};
    }
    const QStringView word = QStringView(m_text).mid(m_at, end - m_at);
    m_at = end + 1;
    return word;
}

std::int64_t WireReader::count()
{
    constexpr int MaximumDigits = 18;
    const QStringView digits = word();
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

QStringView WireReader::text()
{
    const std::int64_t size = count();
    if (m_failed || size > m_text.size() - m_at) {
        fail();
        return {};
    }
    const QStringView text = QStringView(m_text).mid(m_at, static_cast<int>(size));
    m_at += static_cast<int>(size);
    return text;
}

QString withoutZeros(const QString& text)
{
    if (!text.contains(QChar(0)))
        return QLatin1Char('0') + text;
    char16_t standIn = FirstStandIn;
    while (text.contains(QChar(standIn)))
        ++standIn;
    QString travelling = QLatin1Char('1') + QString(QChar(standIn));
    travelling.reserve(text.size() + 2);
    travelling += text;
    QChar* units = travelling.data();
    std::replace(units + 2, units + travelling.size(), QChar(0), QChar(standIn));
    return travelling;
}

std::optional<QString> withZeros(const QString& travelled)
{
    if (travelled.startsWith(QLatin1Char('0')))
        return travelled.mid(1);
    if (travelled.size() < 2 || travelled[0] != QLatin1Char('1'))
        return std::nullopt;
    QString text = travelled.mid(2);
    text.replace(travelled[1], QChar(0));
    return text;
}

} // namespace engine::web
