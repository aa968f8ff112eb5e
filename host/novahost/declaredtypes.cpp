#include "host/novahost/declaredtypes.h"

#include "host/novahost/description.h"

#include <QResource>
#include <sstream>
#include <string_view>

namespace novahost {

namespace {

using Kind = DeclaredType::Kind;

Kind kindOf(const std::string& kind)
{
    static const QHash<QString, Kind> kinds { { QStringLiteral("string"), Kind::String },
        { QStringLiteral("number"), Kind::Number }, { QStringLiteral("integer"), Kind::Integer },
        { QStringLiteral("int64"), Kind::Integer }, { QStringLiteral("boolean"), Kind::Boolean },
        { QStringLiteral("object"), Kind::Object }, { QStringLiteral("array"), Kind::Array },
        { QStringLiteral("map"), Kind::Map }, { QStringLiteral("function"), Kind::Function },
        { QStringLiteral("bytes"), Kind::Bytes }, { QStringLiteral("union"), Kind::Union } };
    return kinds.value(QString::fromStdString(kind), Kind::Any);
}

DeclaredType readType(const Json& type, const QString& key = {}, bool isOptional = true)
{
    DeclaredType read {
        .kind = kindOf(type["kind"].get_ref<const std::string&>()), .key = key, .isOptional = isOptional
    };
    if (read.kind == Kind::Array)
        read.inner.push_back(readType(type["items"]));
    if (read.kind == Kind::Map) {
        read.inner.push_back(readType(type["values"]));
        return read;
    }
    for (const Json& value : type.value("values", Json::array()))
        read.values.append(QString::fromStdString(value.dump()));
    for (const Json& one : type.value("types", Json::array()))
        read.inner.push_back(readType(one));
    for (const Json& field : type.value("fields", Json::array()))
        read.fields.push_back(readType(field["type"], textOf(field["name"]), field["optional"]));
    return read;
}

/// The content of the resource, which is not compressed.
std::string_view description()
{
    static const QResource resource(QStringLiteral(":/novahost/api.json"));
    return { reinterpret_cast<const char*>(resource.data()), static_cast<std::size_t>(resource.size()) };
}

/// Where the entry with this name begins, after `from`: names are the first property of objects and members, each with a
/// second one of its own. npos when there is none.
std::size_t findEntry(const QString& name, const char* second, std::size_t from)
{
    const std::string_view text = description();
    const std::string start = "\"name\": \"" + name.toStdString() + "\",";
    for (std::size_t at = text.find(start, from); at != std::string_view::npos;
         at = text.find(start, at + 1)) {
        const std::size_t next = text.find_first_not_of(" \n", at + start.size());
        if (text.substr(next).starts_with(second))
            return text.rfind('{', at);
    }
    return std::string_view::npos;
}

/// Reads one value and leaves what follows.
Json readValue(std::size_t at)
{
    constexpr std::size_t LongestValue = 65'536;
    std::istringstream stream(std::string(description().substr(at, LongestValue)));
    Json value;
    stream >> value;
    return value;
}

/// npos for an unknown one.
std::size_t findObject(const QString& object)
{
    return findEntry(object.mid(object.indexOf(QLatin1Char('.')) + 1), "\"instance\":", 0);
}

std::optional<std::vector<DeclaredType>> readParameters(const QString& object, const QString& member)
{
    const std::size_t start = findObject(object);
    const std::size_t at = start == std::string_view::npos ? start : findEntry(member, "\"kind\":", start);
    if (at == std::string_view::npos)
        return std::nullopt;
    std::vector<DeclaredType> parameters;
    const Json entry = readValue(at);
    for (const Json& parameter : entry["parameters"]) {
        parameters.push_back(readType(parameter["type"], textOf(parameter["name"]), parameter["optional"]));
        parameters.back().isRest = parameter["rest"];
    }
    return parameters;
}

QStringList readEvents(const QString& object)
{
    static constexpr std::string_view Key = "\"events\": ";
    const std::size_t start = findObject(object);
    const std::size_t at = start == std::string_view::npos ? start : description().find(Key, start);
    QStringList names;
    if (at == std::string_view::npos)
        return names;
    const Json events = readValue(at + Key.size());
    for (const Json& event : events)
        names.append(textOf(event["name"]));
    return names;
}

} // namespace

QString DeclaredType::name() const
{
    switch (kind) {
    case Kind::Any:
        return QStringLiteral("any value");
    case Kind::String:
        return QStringLiteral("a string");
    case Kind::Number:
        return QStringLiteral("a number");
    case Kind::Integer:
        return QStringLiteral("an integer");
    case Kind::Boolean:
        return QStringLiteral("a boolean");
    case Kind::Object:
        return fields.empty() ? QStringLiteral("an object")
                              : QStringLiteral("an object with `%1`").arg(fields.front().key);
    case Kind::Array:
        return QStringLiteral("an array");
    case Kind::Map:
        return QStringLiteral("an object");
    case Kind::Function:
        return QStringLiteral("a function");
    case Kind::Bytes:
        return QStringLiteral("bytes");
    case Kind::Union:
        break;
    }
    QStringList names;
    for (const DeclaredType& one : inner)
        names.append(one.name());
    return names.join(QStringLiteral(" or "));
}

const std::optional<std::vector<DeclaredType>>& DeclaredTypes::parameters(
    const QString& object, const QString& member)
{
    auto& members = m_known[object];
    const auto known = members.constFind(member);
    if (known != members.constEnd())
        return *known;
    return *members.insert(member, readParameters(object, member));
}

const QStringList& DeclaredTypes::events(const QString& object)
{
    const auto known = m_events.constFind(object);
    return known != m_events.constEnd() ? *known : *m_events.insert(object, readEvents(object));
}

} // namespace novahost
