#include "host/suite/skin/theme.h"

#include "host/suite/skin/csscolor.h"
#include "host/suite/skin/skinfiles.h"

#include <QLineF>
#include <QLocale>
#include <cmath>

namespace suite {

namespace {

using nlohmann::json;

constexpr double HalfTurn = 180;

double toRadians(double degrees)
{
    return degrees * std::acos(-1) / HalfTurn;
}

QPointF readPoint(const json& gradient, const char* key, const QPointF& otherwise)
{
    const auto found = gradient.find(key);
    return found == gradient.end() ? otherwise
                                   : QPointF(found->at(0).get<double>(), found->at(1).get<double>());
}

/// Where a linear gradient begins and ends in a square, as CSS has it: its corners get the outermost colours.
QLineF makeLine(double angle)
{
    const QPointF direction(std::sin(toRadians(angle)), -std::cos(toRadians(angle)));
    const QPointF half = direction * ((std::abs(direction.x()) + std::abs(direction.y())) / 2);
    return { QPointF(0.5, 0.5) - half, QPointF(0.5, 0.5) + half };
}

QString formatNumber(double number)
{
    constexpr int Digits = 6;
    return QString::number(number, 'g', Digits);
}

QString formatPoint(const QPointF& point)
{
    return QStringLiteral("%1% %2%").arg(formatNumber(point.x() * 100), formatNumber(point.y() * 100));
}

} // namespace

/// Makes values of JSON that follows the schema, and finds what a schema can not express.
class ThemeReader {
public:
    Theme::Groups readGroups(const json& document)
    {
        Theme::Groups groups;
        for (const auto& [group, values] : document.items()) {
            for (const auto& [name, value] : values.items()) {
                const QString inGroup = QString::fromStdString(group);
                const QString called = QString::fromStdString(name);
                m_place = inGroup + QLatin1Char('.') + called;
                groups[inGroup][called] = readValue(value);
            }
        }
        return groups;
    }

    QStringList errors;

private:
    Theme::Value readValue(const json& value)
    {
        if (value.is_number())
            return value.get<double>();
        if (value.is_object())
            return readGradient(value);
        const QString text = QString::fromStdString(value.get<std::string>());
        const bool isColor =
            text.startsWith(QLatin1Char('#')) || text.startsWith(QLatin1String("rgb"), Qt::CaseInsensitive);
        return Theme::Text { text, isColor ? readColor(text, m_place) : readCssColor(text) };
    }

    QColor readColor(const QString& text, const QString& place)
    {
        QColor color = readCssColor(text);
        if (!color.isValid())
            errors << QStringLiteral(
                "%1: must be a colour: \"#rrggbb\", \"#rrggbbaa\", \"rgba(r, g, b, a)\" or a name")
                          .arg(place);
        return color;
    }

    QGradientStops readStops(const json& gradient)
    {
        QGradientStops stops;
        for (const json& stop : gradient.at("stops")) {
            const QString place = QStringLiteral("%1.stops[%2]").arg(m_place).arg(stops.size());
            const double position = stop.at(0).get<double>();
            if (!stops.isEmpty() && position <= stops.last().first)
                errors << place + QStringLiteral(": must be behind the stop before it");
            stops.append(
                { position, readColor(QString::fromStdString(stop.at(1).get<std::string>()), place) });
        }
        return stops;
    }

    ThemeGradient readGradient(const json& from)
    {
        const QGradientStops stops = readStops(from);
        const std::string type = from.at("type").get<std::string>();
        const QPointF center = readPoint(from, "center", { 0.5, 0.5 });
        ThemeGradient made;
        QGradientStops painted = stops;
        QString form;
        if (type == "linear") {
            QLineF line = makeLine(from.value("angle", HalfTurn));
            line = { readPoint(from, "start", line.p1()), readPoint(from, "end", line.p2()) };
            made.gradient = QLinearGradient(line.p1(), line.p2());
            form = QStringLiteral("linear-gradient(%1deg")
                       .arg(formatNumber(std::fmod(2.5 * HalfTurn - line.angle(), 2 * HalfTurn)));
        } else if (type == "radial") {
            const double radius = from.value("radius", 0.5);
            made.gradient = QRadialGradient(center, radius);
            const QString size = formatNumber(radius * 100);
            form = QStringLiteral("radial-gradient(%1% %1% at %2").arg(size, formatPoint(center));
        } else {
            const double angle = from.value("angle", 0.0);
            // Qt's turn the other way.
            made.gradient = QConicalGradient(center, HalfTurn / 2 - angle);
            painted.clear();
            for (const QGradientStop& stop : stops)
                painted.prepend({ 1 - stop.first, stop.second });
            form = QStringLiteral("conic-gradient(from %1deg at %2")
                       .arg(formatNumber(angle), formatPoint(center));
        }
        const std::string spread = from.value("spread", "pad");
        made.gradient.setSpread(spread == "reflect" ? QGradient::ReflectSpread
                : spread == "repeat"                ? QGradient::RepeatSpread
                                                    : QGradient::PadSpread);
        made.gradient.setCoordinateMode(QGradient::ObjectMode);
        made.gradient.setStops(painted);
        made.css = (spread == "repeat" ? QStringLiteral("repeating-") : QString()) + form;
        for (const QGradientStop& stop : stops)
            made.css +=
                QStringLiteral(", %1 %2%").arg(formatCssColor(stop.second), formatNumber(stop.first * 100));
        made.css += QLatin1Char(')');
        return made;
    }

    QString m_place;
};

QStringList Theme::load(const QString& path)
{
    QStringList errors;
    const json document = readSkinFile(path, SkinFileKind::Theme, errors);
    if (!errors.isEmpty())
        return errors;
    ThemeReader reader;
    const Groups groups = reader.readGroups(document);
    if (!reader.errors.isEmpty())
        return reader.errors;
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        for (auto value = group->begin(); value != group->end(); ++value)
            m_groups[group.key()][value.key()] = *value;
    }
    return {};
}

void Theme::setText(const QString& group, const QString& name, const QString& text)
{
    m_groups[group][name] = Text { text, readCssColor(text) };
}

template <typename Kind> const Kind* Theme::find(const QString& group, const QString& name) const
{
    const auto values = m_groups.constFind(group);
    if (values == m_groups.constEnd())
        return nullptr;
    const auto value = values->constFind(name);
    return value == values->constEnd() ? nullptr : std::get_if<Kind>(&*value);
}

QColor Theme::color(const QString& group, const QString& name, const QColor& fallback) const
{
    const auto* found = find<Text>(group, name);
    return found && found->color.isValid() ? found->color : fallback;
}

QGradient Theme::gradient(const QString& group, const QString& name, const QGradient& fallback) const
{
    const auto* found = find<ThemeGradient>(group, name);
    return found ? found->gradient : fallback;
}

int Theme::hint(const QString& group, const QString& name, int fallback) const
{
    const auto* number = find<double>(group, name);
    return number ? static_cast<int>(*number) : fallback;
}

QString Theme::css(const QString& group, const QString& name) const
{
    if (const auto* found = find<Text>(group, name))
        return found->text.isNull() ? QLatin1String("") : found->text;
    if (const auto* number = find<double>(group, name))
        return QString::number(*number, 'g', QLocale::FloatingPointShortest);
    const auto* found = find<ThemeGradient>(group, name);
    return found ? found->css : QString();
}

} // namespace suite
