#include "host/novahost/description.h"

#include "host/novahost/nearest.h"

#include <QFile>

namespace novahost {

namespace {

QString typeText(const Json& type);

QString parameterTexts(const Json& parameters)
{
    QStringList texts;
    for (const Json& parameter : parameters) {
        const bool isRest = parameter.value("rest", false);
        texts.append(QLatin1String(isRest ? "..." : "") + textOf(parameter["name"])
            + QLatin1String(!isRest && parameter.value("optional", false) ? "?: " : ": ")
            + typeText(parameter["type"]));
    }
    return QLatin1Char('(') + texts.join(QLatin1String(", ")) + QLatin1Char(')');
}

QString typeText(const Json& type)
{
    const std::string& kind = type["kind"].get_ref<const std::string&>();
    const auto within = [](const Json& inner) {
        const QString text = typeText(inner);
        return text.contains(QLatin1Char(' ')) ? QLatin1Char('(') + text + QLatin1Char(')') : text;
    };
    if (kind == "array")
        return within(type["items"]) + QLatin1String("[]");
    if (kind == "map")
        return QLatin1String("map of ") + within(type["values"]);
    if (kind == "object")
        return textOf(type["name"]).isEmpty() ? QStringLiteral("object") : textOf(type["name"]);
    if (kind == "union") {
        QStringList types;
        for (const Json& one : type["types"])
            types.append(typeText(one));
        return types.join(QLatin1String(" | "));
    }
    if (kind == "handle")
        return textOf(type["name"]);
    if (kind == "function")
        return QLatin1String("function") + parameterTexts(type["parameters"]);
    if (kind == "void")
        return QStringLiteral("undefined");
    QStringList values;
    for (const Json& value : type.value("values", Json::array()))
        values.append(QString::fromStdString(value.dump()));
    return values.isEmpty() ? QString::fromStdString(kind) : values.join(QLatin1String(" | "));
}

QString withDoc(const QString& line, const QString& doc)
{
    return doc.isEmpty() ? line : line.leftJustified(40) + QLatin1String("  ") + doc.simplified();
}

/// A line for each property of the objects within a type, inner ones below their outer.
void appendFields(QStringList& lines, const Json& type, const QString& indent)
{
    if (type["kind"] == "array")
        return appendFields(lines, type["items"], indent);
    if (type["kind"] == "map")
        return appendFields(lines, type["values"], indent);
    if (type["kind"] == "function") {
        for (const Json& parameter : type["parameters"])
            appendFields(lines, parameter["type"], indent);
    }
    if (type["kind"] == "union") {
        for (const Json& one : type["types"])
            appendFields(lines, one, indent);
    }
    if (type["kind"] != "object")
        return;
    for (const Json& field : type["fields"]) {
        QString line = indent + textOf(field["name"]) + QLatin1String(field["optional"] ? "?: " : ": ")
            + typeText(field["type"]);
        if (const auto value = field.find("default"); value != field.end())
            line += QLatin1String(" = ") + QString::fromStdString(value->dump());
        lines.append(withDoc(line, textOf(field["doc"])));
        appendFields(lines, field["type"], indent + QLatin1String("  "));
    }
}

} // namespace

QString textOf(const Json& string)
{
    return QString::fromStdString(string.get_ref<const std::string&>());
}

bool isNamed(const QString& name, const QString& wanted, Qt::CaseSensitivity sensitivity)
{
    return name.compare(wanted, sensitivity) == 0 || name.endsWith(QLatin1Char('.') + wanted, sensitivity);
}

const Description& Description::builtIn()
{
    static const Description description;
    return description;
}

Description::Description()
{
    QFile file(QStringLiteral(":/novahost/api.json"));
    file.open(QIODevice::ReadOnly);
    m_api = Json::parse(file.readAll().toStdString());
}

const Json* Description::object(const QString& name) const
{
    for (const Json& object : objects()) {
        if (fullName(object) == name)
            return &object;
    }
    return nullptr;
}

const Json* Description::member(const Json& object, const QString& name)
{
    for (const Json& member : object["members"]) {
        if (textOf(member["name"]) == name)
            return &member;
    }
    return nullptr;
}

std::optional<Description::Member> Description::member(
    const QString& path, Qt::CaseSensitivity sensitivity) const
{
    if (!path.contains(QLatin1Char('.')))
        return std::nullopt;
    for (const Json& object : objects()) {
        for (const Json& member : object["members"]) {
            if (isNamed(fullName(object) + QLatin1Char('.') + textOf(member["name"]), path, sensitivity))
                return Member { object, member };
        }
    }
    return std::nullopt;
}

QStringList Description::names() const
{
    QStringList names;
    for (const Json& object : objects()) {
        names.append(textOf(object["name"]));
        const QString prefix = names.last() + QLatin1Char('.');
        for (const Json& member : object["members"])
            names.append(prefix + textOf(member["name"]));
    }
    return names;
}

QString Description::advice(const QString& wanted) const
{
    return advise(names(), wanted, "did you mean %1?", "`novahost members` lists all");
}

QString Description::answerText(const Json& answer)
{
    const QString type = typeText(answer["type"]);
    const Json& form = answer["form"];
    return form == "envelope" ? QString::fromLatin1("Answer<%1>").arg(type)
        : form == "promise"   ? QString::fromLatin1("Promise<%1>").arg(type)
                              : type;
}

QString Description::fullName(const Json& object)
{
    return QLatin1String("NovaExtension.") + textOf(object["name"]);
}

QString Description::signature(const Member& given)
{
    const auto& [object, member] = given;
    const QString name = textOf(object["name"]) + QLatin1Char('.') + textOf(member["name"]);
    return name + (member["kind"] == "property" ? QString() : parameterTexts(member["parameters"]))
        + QLatin1String(": ") + answerText(member["answer"]);
}

QStringList Description::documentation(const Member& given)
{
    const auto& [object, member] = given;
    const QString indent = QStringLiteral("  ");
    QStringList lines { signature(given) };
    if (const QString doc = textOf(member["doc"]).simplified(); !doc.isEmpty())
        lines.append(indent + doc);
    if (!member["built"])
        lines.append(indent + QLatin1String("Not built yet."));
    for (const Json& parameter : member["parameters"]) {
        lines.append(
            withDoc(indent + textOf(parameter["name"]) + QLatin1String(": ") + typeText(parameter["type"]),
                textOf(parameter["doc"])));
        appendFields(lines, parameter["type"], indent + indent);
    }
    QStringList fields;
    appendFields(fields, member["answer"]["type"], indent + indent);
    if (!fields.isEmpty())
        lines += QStringList { indent + QLatin1String("returns ") + answerText(member["answer"]) } + fields;
    if (!member["event"].is_null())
        lines.append(indent + QLatin1String("event ") + textOf(member["event"]));
    for (const Json& failure : member["failures"])
        lines.append(QString::fromLatin1("  %1 code %2  \"%3\"")
                         .arg(QLatin1String(failure["rejects"] ? "rejects with" : "fails with"))
                         .arg(failure["code"].get<int>())
                         .arg(textOf(failure["text"])));
    lines.append(QString::fromLatin1("  category %1 (0x%2)")
                     .arg(textOf(member["category"]))
                     .arg(member["mask"].get<std::uint32_t>(), 0, 16));
    return lines;
}

QStringList Description::overview(const Json& object)
{
    QStringList lines { fullName(object) + QLatin1String(", ") + textOf(object["instance"]) };
    if (const QString doc = textOf(object["doc"]).simplified(); !doc.isEmpty())
        lines.append(QLatin1String("  ") + doc);
    for (const Json& member : object["members"])
        lines.append(QLatin1String("  ") + signature({ object, member })
            + QLatin1String(member["built"] ? "" : "  (not built yet)"));
    for (const Json& event : object["events"]) {
        lines.append(withDoc(QLatin1String("  event ") + textOf(event["name"]), textOf(event["doc"])));
        appendFields(lines, event["payload"], QStringLiteral("    "));
    }
    return lines;
}

} // namespace novahost
