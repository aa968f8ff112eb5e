#include "host/novahost/inputparser.h"

#include "host/novahost/description.h"

#include <QFile>

namespace novahost {

namespace {

QString resource(const char* name)
{
    QFile file(QLatin1String(":/novahost/") + QLatin1String(name));
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll());
}

QStringList listOf(const Json& strings)
{
    QStringList list;
    for (const Json& string : strings)
        list.append(textOf(string));
    return list;
}

Json parsed(const QByteArray& json)
{
    return json.isEmpty() ? Json::object() : Json::parse(json.toStdString());
}

} // namespace

engine::jsc::ToolScript& InputParser::script()
{
    if (!m_script) {
        m_script.emplace();
        m_script->loadParser();
        m_script->load(resource("plan.js"));
    }
    return *m_script;
}

engine::jsc::ToolScript& InputParser::completer()
{
    if (!m_completes) {
        m_completes = true;
        script().load(resource("complete.js"));
        script().set("api", resource("api.json"));
    }
    return *m_script;
}

bool InputParser::isModule(const QString& source)
{
    return parsed(script().call("isModule", source)) == Json(true);
}

InputParser::Input InputParser::read(const QString& source)
{
    const Json plan = parsed(script().call("plan", source));
    Input input;
    input.isIncomplete = plan.value("isIncomplete", false);
    input.error = QString::fromStdString(plan.value("error", std::string()));
    input.script.source = plan.contains("source") ? textOf(plan["source"]) : source;
    input.script.declarations = QString::fromStdString(plan.value("declarations", std::string()));
    input.script.pieces = QString::fromStdString(plan.value("pieces", std::string()));
    input.script.typed = source;
    input.script.isKept = plan.value("isKept", false);
    return input;
}

void InputParser::commit()
{
    script().call("commit", {});
}

InputParser::Suggestions InputParser::suggest(const QString& textBeforeCursor)
{
    const Json found = parsed(completer().call("complete", textBeforeCursor));
    Suggestions suggestions;
    suggestions.from = found.value("from", textBeforeCursor.size());
    suggestions.names = listOf(found.value("names", Json::array()));
    if (const auto steps = found.find("steps"); steps != found.end())
        suggestions.path = listOf(*steps);
    suggestions.member = QString::fromStdString(found.value("member", std::string()));
    return suggestions;
}

QString InputParser::typeOf(const QString& expression)
{
    const Json found = parsed(completer().call("typeOfText", expression));
    if (const auto member = found.find("member"); member != found.end())
        return Description::signature(*Description::builtIn().member(textOf(*member)));
    return found.contains("type") ? Description::answerText(found) : QString();
}

} // namespace novahost
