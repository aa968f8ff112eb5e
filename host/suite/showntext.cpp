#include "host/suite/showntext.h"

namespace suite {

namespace {

/// What is shown of a long path, in front and at the end.
constexpr int ShownPart = 80;

bool isHidden(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format: // such as those that write from right to left
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString escapeUnit(QChar unit)
{
    return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
}

} // namespace

QString escapeText(const QString& text)
{
    QString result;
    for (int at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        const bool isPair = unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        if (unit == QLatin1Char('\\'))
            result += QLatin1String("\\\\");
        else if (unit == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (unit == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (unit == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (isPair) {
            const QChar low = text[++at];
            const bool hidden = isHidden(QChar::surrogateToUcs4(unit, low));
            result += hidden ? escapeUnit(unit) + escapeUnit(low) : QString(unit) + low;
        } else if (isHidden(unit.unicode()))
            result += escapeUnit(unit);
        else
            result += unit;
    }
    return result;
}

QString showPath(const QString& path)
{
    QString shown = escapeText(path).replace(QLatin1Char('"'), QLatin1String("\\\""));
    if (shown.size() > 2 * ShownPart)
        shown = shown.left(ShownPart) + QChar(0x2026) + shown.right(ShownPart);
    return QLatin1Char('"') + shown + QLatin1Char('"');
}

} // namespace suite
