#include "webui/cssvalues.h"

#include <QMetaEnum>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace jsapi {

namespace {

QRegularExpression makePattern(const char* pattern)
{
    return QRegularExpression(heapString(pattern), QRegularExpression::CaseInsensitiveOption);
}

template <typename Enum> QString enumName(Enum value)
{
    return heapString(QMetaEnum::fromType<Enum>().valueToKey(value));
}

} // namespace

/// The shortest number that names the same alpha.
static QString toCssAlpha(const QColor& color)
{
    QString text;
    for (int precision = 1; precision <= 6; ++precision) {
        text = QString::number(color.alphaF(), 'g', precision);
        QColor same(color);
        same.setAlphaF(text.toDouble());
        if (same.rgba64().alpha() == color.rgba64().alpha())
            break;
    }
    return text;
}

QString toCssColor(const QColor& color)
{
    return heapString("rgba(%1,%2,%3,%4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(toCssAlpha(color));
}

SkinGradient toSkinGradient(const QGradient& gradient)
{
    // Qt leaves the spread of a gradient without a type as it finds it.
    if (gradient.type() == QGradient::NoGradient)
        return { enumName(QGradient::NoGradient), enumName(QGradient::PadSpread),
            enumName(QGradient::LogicalMode), {} };
    SkinGradient converted { enumName(gradient.type()), enumName(gradient.spread()),
        enumName(gradient.coordinateMode()), {} };
    for (const QGradientStop& stop : gradient.stops())
        converted.stops.push_back({ stop.first, toCssColor(stop.second) });
    return converted;
}

CssForm classifyCss(const QString& text)
{
    const auto begins = [lower = text.trimmed().left(16).toLower()](
                            const char* beginning) { return lower.startsWith(QLatin1String(beginning)); };
    if (begins("#") || begins("rgb"))
        return CssForm::Color;
    return begins("linear-gradient") ? CssForm::Gradient : CssForm::Other;
}

namespace {

/// A number, or a percentage of `whole`; nothing for anything else.
std::optional<double> parseNumber(const QString& text, double whole)
{
    const bool isPercentage = text.endsWith(QLatin1Char('%'));
    bool isNumber = false;
    const double number = text.leftRef(text.size() - (isPercentage ? 1 : 0)).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return std::nullopt;
    return isPercentage ? number / 100 * whole : number;
}

std::optional<QColor> parseHexColor(const QString& text)
{
    static const QRegularExpression pattern = makePattern("^#(?:[0-9a-f]{3,4}|[0-9a-f]{6}|[0-9a-f]{8})$");
    if (!pattern.match(text).hasMatch())
        return std::nullopt;
    const int digits = text.size() > 5 ? 2 : 1;
    QColor color(0, 0, 0);
    const auto part = [&](int index) {
        const int value = text.midRef(1 + index * digits, digits).toInt(nullptr, 16);
        return digits == 2 ? value : value * 0x11;
    };
    color.setRgb(part(0), part(1), part(2), (text.size() - 1) / digits == 4 ? part(3) : 255);
    return color;
}

std::optional<QColor> parseRgbColor(const QString& text)
{
    static const QRegularExpression pattern = makePattern("^rgba?\\(([^()]*)\\)$");
    static const QRegularExpression separators = makePattern("\\s*[,/]\\s*|\\s+");
    const QRegularExpressionMatch match = pattern.match(text);
    const QStringList parts = match.captured(1).trimmed().split(separators);
    if (!match.hasMatch() || parts.size() < 3 || parts.size() > 4)
        return std::nullopt;
    double values[] { 0, 0, 0, 1 };
    for (int i = 0; i < parts.size(); ++i) {
        const std::optional<double> value = parseNumber(parts[i], i < 3 ? 255 : 1);
        if (!value)
            return std::nullopt;
        values[i] = qBound(0.0, *value, i < 3 ? 255.0 : 1.0);
    }
    QColor color(qRound(values[0]), qRound(values[1]), qRound(values[2]));
    color.setAlphaF(values[3]);
    return color;
}

/// The parts between the commas that are in no parentheses; nothing when these do not match.
std::optional<QStringList> splitAtCommas(const QString& text)
{
    QStringList parts { QString() };
    int depth = 0;
    for (const QChar character : text) {
        depth += character == QLatin1Char('(') ? 1 : character == QLatin1Char(')') ? -1 : 0;
        if (depth < 0)
            return std::nullopt;
        if (character == QLatin1Char(',') && depth == 0)
            parts.append(QString());
        else
            parts.last().append(character);
    }
    return depth == 0 ? std::optional(parts) : std::nullopt;
}

struct ParsedStop {
    QColor color;
    std::optional<double> position;
};

/// Appends one stop, or two for a colour with two positions. False for what is none.
bool parseStop(const QString& text, std::vector<ParsedStop>& stops)
{
    static const QRegularExpression pattern = makePattern("^(\\S+\\([^()]*\\)|\\S+)((?:\\s+\\S+){0,2})$");
    static const QRegularExpression spaces = makePattern("\\s+");
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    const std::optional<QColor> color =
        match.hasMatch() ? parseCssColor(match.captured(1)) : std::optional<QColor>();
    if (!color)
        return false;
    const QStringList positions = match.captured(2).split(spaces, Qt::SkipEmptyParts);
    for (const QString& position : positions) {
        const std::optional<double> parsed =
            position.endsWith(QLatin1Char('%')) ? parseNumber(position, 1) : std::nullopt;
        if (!parsed)
            return false;
        stops.push_back({ *color, qBound(0.0, *parsed, 1.0) });
    }
    if (positions.isEmpty())
        stops.push_back({ *color, {} });
    return true;
}

/// Gives each stop a position, as CSS does: never before an earlier one, and evenly between those that have one.
void placeStops(std::vector<ParsedStop>& stops)
{
    stops.front().position = stops.front().position.value_or(0);
    stops.back().position = stops.back().position.value_or(1);
    std::size_t placed = 0;
    for (std::size_t i = 1; i < stops.size(); ++i) {
        if (!stops[i].position)
            continue;
        const double from = *stops[placed].position;
        stops[i].position = std::max(from, *stops[i].position);
        const double step = (*stops[i].position - from) / static_cast<double>(i - placed);
        for (std::size_t between = placed + 1; between < i; ++between)
            stops[between].position = from + step * static_cast<double>(between - placed);
        placed = i;
    }
}

} // namespace

std::optional<QColor> parseCssColor(const QString& text)
{
    const QString color = text.trimmed().toLower();
    if (color.startsWith(QLatin1Char('#')))
        return parseHexColor(color);
    if (color.startsWith(QLatin1String("rgb")))
        return parseRgbColor(color);
    return QColor::isValidColor(color) ? std::optional(QColor(color)) : std::nullopt;
}

std::optional<SkinGradient> parseCssGradient(const QString& text)
{
    static const QRegularExpression pattern = makePattern("^linear-gradient\\((.*)\\)$");
    static const QRegularExpression direction = makePattern(
        "^\\s*(?:[-+]?[0-9.]+(?:deg|grad|rad|turn)|to(?:\\s+(?:left|right|top|bottom)){1,2})\\s*$");
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    std::optional<QStringList> parts = match.hasMatch() ? splitAtCommas(match.captured(1)) : std::nullopt;
    if (!parts)
        return std::nullopt;
    if (direction.match(parts->first()).hasMatch())
        parts->removeFirst();
    std::vector<ParsedStop> stops;
    if (!std::all_of(
            parts->cbegin(), parts->cend(), [&](const QString& part) { return parseStop(part, stops); })
        || stops.size() < 2)
        return std::nullopt;
    placeStops(stops);
    SkinGradient gradient { enumName(QGradient::LinearGradient), enumName(QGradient::PadSpread),
        enumName(QGradient::ObjectMode), {} };
    for (const ParsedStop& stop : stops)
        gradient.stops.push_back({ *stop.position, toCssColor(stop.color) });
    return gradient;
}

} // namespace jsapi
