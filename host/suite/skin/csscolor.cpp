#include "host/suite/skin/csscolor.h"

#include <QRegularExpression>

namespace suite {

static QColor readHexColor(const QString& digits)
{
    QString full = digits;
    if (digits.size() <= 4) {
        full.clear();
        for (const QChar digit : digits)
            full += QString(2, digit);
    }
    const uint value = (full + QStringLiteral("ff")).left(8).toUInt(nullptr, 16);
    constexpr uint Byte = 0xff;
    return QColor(static_cast<int>(value >> 24), static_cast<int>(value >> 16 & Byte),
        static_cast<int>(value >> 8 & Byte), static_cast<int>(value & Byte));
}

QColor readCssColor(const QString& text)
{
    static const QRegularExpression hex(QStringLiteral("^#([0-9a-f]{3,4}|[0-9a-f]{6}|[0-9a-f]{8})$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression function(
        QStringLiteral(
            R"(^rgba?\(\s*(\d{1,3})\s*,\s*(\d{1,3})\s*,\s*(\d{1,3})\s*(?:,\s*(\d*\.?\d+)\s*)?\)$)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression name(QStringLiteral("^[A-Za-z]{3,20}$"));
    constexpr int LongestColor = 64;
    const QString trimmed = text.size() > LongestColor ? QString() : text.trimmed();
    if (const auto match = hex.match(trimmed); match.hasMatch())
        return readHexColor(match.captured(1));
    if (const auto match = function.match(trimmed); match.hasMatch()) {
        QColor color(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
        if (color.isValid() && match.lastCapturedIndex() == 4)
            color.setAlphaF(qMin(1.0, match.captured(4).toDouble()));
        return color;
    }
    return name.match(trimmed).hasMatch() && QColor::isValidColor(trimmed) ? QColor(trimmed) : QColor();
}

QString formatCssColor(const QColor& color)
{
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alphaF());
}

} // namespace suite
