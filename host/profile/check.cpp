#include "host/profile/check.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>
#include <vector>

namespace profile {

namespace {

using nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;

QString describePosition(const QByteArray& text, std::size_t byte)
{
    const QByteArray before = text.left(static_cast<int>(byte ? byte - 1 : 0));
    const QString line = QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1));
    return QStringLiteral("line %1, column %2").arg(before.count('\n') + 1).arg(line.size() + 1);
}

/// Far below what a recursion over the values needs too much stack for.
constexpr std::size_t MaxDepth = 200;

/// Collects duplicate keys of objects, of which json::parse() keeps the last only. It calls functions itself, but needs
/// quadratic time then.
class DuplicateKeys final : public json::json_sax_t {
public:
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(json::number_integer_t) override { return true; }
    bool number_unsigned(json::number_unsigned_t) override { return true; }
    bool number_float(json::number_float_t, const std::string&) override { return true; }
    bool string(std::string&) override { return true; }
    bool binary(json::binary_t&) override { return true; }
    bool start_object(std::size_t) override { return open(); }
    bool start_array(std::size_t) override { return open(); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& key) override
    {
        if (!m_open.back().insert(key).second)
            found
                << QStringLiteral("%1: appears twice; keep one of the two").arg(QString::fromStdString(key));
        return true;
    }
    /// Left to json::parse().
    bool parse_error(std::size_t, const std::string&, const json::exception&) override { return false; }

    QStringList found;

private:
    bool open()
    {
        m_open.emplace_back();
        if (m_open.size() > MaxDepth)
            throw std::runtime_error("is nested too deeply");
        return true;
    }
    bool close()
    {
        m_open.pop_back();
        return true;
    }

    std::vector<std::set<std::string>> m_open; ///< empty for a list
};

/// A place in the document together with the schema that holds there.
struct Place {
    QString path;
    const json* value;
    const json* schema; ///< null where the schema has no rule
};

const json& resolve(const json& root, const json& schema)
{
    return schema.contains("$ref")
        ? root.at(json::json_pointer(schema.at("$ref").get<std::string>().substr(1)))
        : schema;
}

const json* findSubschema(const json& root, const json* schema, const std::string& key)
{
    const json* below = nullptr;
    if (schema->contains("properties") && schema->at("properties").contains(key))
        below = &schema->at("properties").at(key);
    else if (schema->contains("additionalProperties") && schema->at("additionalProperties").is_object())
        below = &schema->at("additionalProperties");
    return below ? &resolve(root, *below) : nullptr;
}

/// The rule for an item of a list: that of all, or, where the schema has a list of them, its own.
const json* findItemSchema(const json& root, const json& schema, std::size_t item)
{
    const auto items = schema.find("items");
    if (items == schema.end() || (items->is_array() && item >= items->size()))
        return nullptr;
    return &resolve(root, items->is_array() ? items->at(item) : *items);
}

/// Finds the place that a validator's context describes: "<root>", "[dpi]", "[scale]".
Place locate(const json& document, const json& schema, const std::vector<std::string>& context)
{
    Place place { {}, &document, &schema };
    for (std::size_t step = 1; step < context.size() && place.schema; ++step) {
        const std::string key = context[step].substr(1, context[step].size() - 2);
        if (place.value->is_array()) {
            place.value = &place.value->at(std::stoul(key));
            place.path += QStringLiteral("[%1]").arg(QString::fromStdString(key));
            place.schema = findItemSchema(schema, *place.schema, std::stoul(key));
        } else {
            place.value = &place.value->at(key);
            place.path +=
                (place.path.isEmpty() ? QString() : QStringLiteral(".")) + QString::fromStdString(key);
            place.schema = findSubschema(schema, place.schema, key);
        }
    }
    return place;
}

QString formatNumber(const json& number)
{
    return QString::fromStdString(number.dump());
}

QString describeRange(const json& schema)
{
    if (schema.contains("minimum") && schema.contains("maximum"))
        return QStringLiteral(" from %1 to %2")
            .arg(formatNumber(schema["minimum"]), formatNumber(schema["maximum"]));
    if (schema.contains("minimum"))
        return QStringLiteral(" of at least %1").arg(formatNumber(schema["minimum"]));
    return {};
}

QString describeType(const std::string& type, const json& schema)
{
    if (type == "boolean")
        return QStringLiteral("true or false");
    if (type == "integer")
        return QStringLiteral("a whole number") + describeRange(schema);
    if (type == "number")
        return QStringLiteral("a number") + describeRange(schema);
    if (type == "array")
        return QStringLiteral("a list");
    if (type == "object")
        return QStringLiteral("an object");
    return schema.value("minLength", 0) > 0 ? QStringLiteral("a text that is not empty")
                                            : QStringLiteral("a text");
}

QString describeExpectation(const json& schema)
{
    if (schema.contains("errorMessage"))
        return QString::fromStdString(schema["errorMessage"].get<std::string>());
    QStringList choices;
    if (schema.contains("enum")) {
        for (const json& choice : schema["enum"])
            choices << QString::fromStdString(choice.dump());
        return QStringLiteral("must be one of ") + choices.join(QStringLiteral(", "));
    }
    const json types = schema["type"].is_array() ? schema["type"] : json::array({ schema["type"] });
    for (const json& type : types)
        choices << describeType(type.get<std::string>(), schema);
    return QStringLiteral("must be ") + choices.join(QStringLiteral(" or "));
}

/// Whether a schema's type, or one of its types, is this one.
bool allows(const json& schema, const char* type)
{
    const json& types = schema.at("type");
    return types == type || (types.is_array() && std::ranges::find(types, type) != types.end());
}

QStringList findUnknownKeys(const Place& place, const QString& kind)
{
    QStringList errors;
    const json& known = place.schema->at("properties");
    QStringList names;
    for (const auto& entry : known.items())
        names << QString::fromStdString(entry.key());
    for (const auto& entry : place.value->items()) {
        if (known.contains(entry.key()))
            continue;
        const QString key = QString::fromStdString(entry.key());
        errors << QStringLiteral("%1: is not a key of a %2; use one of %3")
                      .arg(place.path.isEmpty() ? key : place.path + QLatin1Char('.') + key, kind,
                          names.join(QStringLiteral(", ")));
    }
    return errors;
}

QString nameOf(const Place& place, const QString& kind)
{
    return place.path.isEmpty() ? QStringLiteral("the ") + kind : place.path;
}

QStringList findMissingKeys(const Place& place, const QString& kind)
{
    QStringList errors;
    for (const json& key : place.schema->value("required", json::array())) {
        if (!place.value->contains(key.get<std::string>()))
            errors << QStringLiteral("%1: needs \"%2\"")
                          .arg(nameOf(place, kind), QString::fromStdString(key.get<std::string>()));
    }
    return errors;
}

/// The errors at a place. Those in the members of an object are reported for the members.
QStringList findFaults(const Place& place, const QString& kind)
{
    if (!place.schema)
        return {};
    if (place.value->is_object() && allows(*place.schema, "object"))
        return place.schema->contains("properties")
            ? findUnknownKeys(place, kind) + findMissingKeys(place, kind)
            : QStringList();
    const std::size_t size = place.value->size();
    if (place.value->is_array() && allows(*place.schema, "array")
        && size >= place.schema->value("minItems", 0U) && size <= place.schema->value("maxItems", size))
        return {};
    return { nameOf(place, kind) + QStringLiteral(": ") + describeExpectation(*place.schema) };
}

QStringList findSchemaErrors(const json& document, const json& schema, const QString& kind)
{
    valijson::Schema rules;
    valijson::SchemaParser().populateSchema(Adapter(schema), rules);
    valijson::Validator validator(valijson::Validator::kStrongTypes);
    valijson::ValidationResults results;
    QStringList errors;
    if (validator.validate(rules, Adapter(document), &results))
        return errors;
    for (const auto& fault : results)
        errors << findFaults(locate(document, schema, fault.context), kind);
    errors.removeDuplicates();
    if (errors.isEmpty())
        errors << QStringLiteral("does not follow the schema of a ") + kind;
    return errors;
}

} // namespace

Checked parseChecked(const QByteArray& text, const json& schema, const QString& kind)
{
    Checked checked;
    try {
        DuplicateKeys duplicates;
        json::sax_parse(text.begin(), text.end(), &duplicates);
        checked.document = json::parse(text.begin(), text.end());
        checked.errors = duplicates.found;
        checked.errors << findSchemaErrors(checked.document, schema, kind);
    } catch (const json::parse_error& error) {
        checked.errors << QStringLiteral(
            "%1: is not JSON; look for a missing quote, comma or bracket before it")
                              .arg(describePosition(text, error.byte));
    } catch (const std::exception& error) {
        checked.errors << QString::fromUtf8(error.what());
    }
    return checked;
}

} // namespace profile
