#include "host/novahost/members.h"

#include "host/novahost/description.h"
#include "host/novahost/output.h"

#include <map>

namespace novahost {

namespace {

/// A page without script: tables are published for a page.
class SilentPage final : public vexlite::ScriptPage {
public:
    SilentPage()
        : m_context(vexlite::Core::instance()->openPage(this, {}))
    {
    }
    ~SilentPage() override { vexlite::Core::instance()->closePage(m_context); }
    SilentPage(const SilentPage&) = delete;
    SilentPage& operator=(const SilentPage&) = delete;

    const JSContextEnv& context() const { return m_context; }
    bool createPromise(std::int64_t) override { return false; }
    void settlePromise(std::int64_t, JSPromiseState, const KJSVariant&) override { }

private:
    JSContextEnv m_context;
};

struct Published {
    QString name;
    vexlite::BoundObject object;
};

/// What there is, in the order of the description; what is not described follows in the order of the names.
QStringList inOrder(QStringList left)
{
    QStringList names;
    for (const Json& object : Description::builtIn().objects()) {
        const QString name = textOf(object["name"]);
        if (left.removeOne(name))
            names.append(name);
    }
    return names + left;
}

std::vector<Published> publishedObjects(const JSContextEnv& context, QString& error)
{
    vexlite::Core& core = *vexlite::Core::instance();
    std::vector<Published> all;
    for (const QString& name : inOrder(core.objectNames())) {
        vexlite::BoundObject object = core.bindObject(context, name);
        if (!object.members) {
            error = QString::fromLatin1("%1: the object can not be bound (0x%2)")
                        .arg(name)
                        .arg(object.status, 8, 16, QLatin1Char('0'));
            return {};
        }
        all.push_back({ QLatin1String("NovaExtension.") + name, std::move(object) });
    }
    return all;
}

/// The table as {"object", "mode", "members"}; `built` gets whether each of these members is.
Json tableOf(
    const Published& published, JSMemberInvoke unsupported, bool unsupportedOnly, std::vector<bool>& built)
{
    const IJSMemberList& list = *published.object.members.get();
    std::uint32_t mode = 0;
    published.object.object->GetInstanceMode(&mode);
    Json members = Json::array();
    for (std::int32_t i = 0; i < list.Count(); ++i) {
        const bool isBuilt = !unsupported || list.Invoke(i) != unsupported;
        if (unsupportedOnly && isBuilt)
            continue;
        built.push_back(isBuilt);
        Json params = Json::array();
        for (std::int32_t p = 0; p < list.ParameterCount(i); ++p) {
            const JSParameter parameter = list.Parameter(i, p);
            params.push_back({ { "type", parameter.type }, { "name", nullptr } });
            if (parameter.name)
                params.back()["name"] = QString::fromUtf16(parameter.name).toStdString();
        }
        members.push_back({ { "name", QString::fromUtf16(list.Name(i)).toStdString() },
            { "kind", list.Kind(i) }, { "mask", list.Mask(i) }, { "result", list.ResultType(i) },
            { "params", std::move(params) } });
    }
    return { { "object", published.name.toStdString() }, { "mode", mode },
        { "members", std::move(members) } };
}

struct CoreType {
    std::int64_t code;
    const char* name;
    const char* doc;
};
constexpr CoreType CoreTypes[] = {
    { 0, "nothing", "no answer" },
    { 8, "string", "a string" },
    { 11, "boolean", "true or false" },
    { 12, "variant", "any value, handed on as it is" },
    { 13, "object", "an object or a function" },
    { 27, "array", "a list of values" },
    { 0x8004, "any", "any value; the member reads what it needs of it" },
};

QString typeName(std::int64_t type)
{
    for (const CoreType& one : CoreTypes) {
        if (one.code == type)
            return QString::fromLatin1(one.name);
    }
    return QString::number(type);
}

const char* instanceOf(std::uint32_t mode)
{
    return mode == 3 ? "shared" : mode == 0 ? "handed out" : "page";
}

/// What the JS core sees of a member.
QString lineOf(const Json& member)
{
    QStringList params;
    for (const Json& param : member["params"]) {
        const QString type = typeName(param["type"]);
        params.append(param["name"].is_null() ? type : textOf(param["name"]) + QLatin1String(": ") + type);
    }
    const QString name = textOf(member["name"]);
    const QString signature = member["kind"] == 1
        ? name
        : name + QLatin1Char('(') + params.join(QLatin1String(", ")) + QLatin1Char(')');
    return QString::fromLatin1("%1 -> %2  0x%3")
        .arg(signature, -44)
        .arg(typeName(member["result"]), -8)
        .arg(member["mask"].get<std::uint32_t>(), 0, 16);
}

void printTable(const Json& table, const std::vector<bool>& built)
{
    const Json* object = Description::builtIn().object(textOf(table["object"]));
    const QString instance = QString::fromLatin1(instanceOf(table["mode"].get<std::uint32_t>()));
    printLine(QString::fromLatin1("%1  (%2, %3 members)")
                  .arg(textOf(table["object"]),
                      instance == QLatin1String("page") ? QStringLiteral("one a page") : instance)
                  .arg(table["members"].size()),
        false);
    for (std::size_t i = 0; i < table["members"].size(); ++i) {
        const Json& member = table["members"][i];
        const Json* known = object ? Description::member(*object, textOf(member["name"])) : nullptr;
        QString line = QLatin1String("  ") + lineOf(member).leftJustified(64) + QLatin1String("  ");
        if (known)
            line += textOf((*known)["category"]);
        if (!built[i])
            line = line.leftJustified(80) + QLatin1String("  ") + QLatin1String("not built");
        printLine(line, false);
    }
}

void printLegend()
{
    printLine(QStringLiteral("Types"), false);
    for (const CoreType& type : CoreTypes)
        printLine(
            QString::fromLatin1("  %1  %2").arg(QLatin1String(type.name), -8).arg(QLatin1String(type.doc)),
            false);
    std::map<std::uint32_t, QString> categories;
    for (const Json& object : Description::builtIn().objects()) {
        for (const Json& member : object["members"])
            categories.emplace(member["mask"].get<std::uint32_t>(), textOf(member["category"]));
    }
    printLine(QStringLiteral("Categories, which --deny hides by their bits"), false);
    for (const auto& [mask, name] : categories)
        printLine(QString::fromLatin1("  0x%1  %2").arg(QString::number(mask, 16), -6).arg(name), false);
}

/// What the description says of a member, in the form of a published table.
Json tableRow(const Json& member)
{
    return { { "name", member["name"] }, { "kind", member["kind"] == "property" ? 1 : 0 },
        { "mask", member["mask"] }, { "result", member["core"]["result"] },
        { "params", member["core"]["parameters"] } };
}

QStringList namesOf(const Json& members)
{
    QStringList names;
    for (const Json& member : members)
        names.append(textOf(member["name"]));
    return names;
}

/// What the description says in another way than the table of an object; `denied` is what --deny hides.
QStringList differencesOf(
    const Json& table, const std::vector<bool>& built, const Json& object, std::uint32_t denied)
{
    const QString path = textOf(table["object"]);
    QStringList found;
    const auto differs = [&](const QString& name, const QString& published, const QString& described) {
        if (published != described)
            found.append(QString::fromLatin1("%1%2: published is %3, described is %4")
                             .arg(path, name, published.simplified(), described.simplified()));
    };
    const auto word = [](bool is) { return QLatin1String(is ? "built" : "not built"); };
    differs({}, QLatin1String(instanceOf(table["mode"].get<std::uint32_t>())), textOf(object["instance"]));
    const QStringList published = namesOf(table["members"]);
    QStringList described;
    for (const Json& member : object["members"]) {
        if (member["mask"].get<std::uint32_t>() & denied)
            continue;
        const QString name = textOf(member["name"]);
        described.append(name);
        const int at = published.indexOf(name);
        if (at < 0) {
            found.append(QString::fromLatin1("%1.%2: described, but not published").arg(path, name));
            continue;
        }
        const QString dotted = QLatin1Char('.') + name;
        const auto index = static_cast<std::size_t>(at);
        differs(dotted, lineOf(table["members"][index]), lineOf(tableRow(member)));
        differs(dotted, word(built[index]), word(member["built"].get<bool>()));
    }
    for (const QString& name : published) {
        if (!described.contains(name))
            found.append(QString::fromLatin1("%1.%2: published, but not described").arg(path, name));
    }
    if (found.isEmpty())
        differs(QStringLiteral(", order of members"), published.join(QLatin1Char(' ')),
            described.join(QLatin1Char(' ')));
    return found;
}

/// The table of an object that another one hands out, as described: the library makes it known to the JS core no
/// earlier than that.
Json describedTable(const Json& object, std::uint32_t denied, bool unsupportedOnly, std::vector<bool>& built)
{
    Json members = Json::array();
    for (const Json& member : object["members"]) {
        const bool isBuilt = member["built"].get<bool>();
        if (member["mask"].get<std::uint32_t>() & denied || (unsupportedOnly && isBuilt))
            continue;
        built.push_back(isBuilt);
        members.push_back(tableRow(member));
    }
    return { { "object", Description::fullName(object).toStdString() }, { "mode", 0 },
        { "members", std::move(members) } };
}

/// Prints what the description says of a member. Returns whether there is one of that name.
bool documentMember(const Options& options)
{
    const std::optional<Description::Member> found = Description::builtIn().member(options.object);
    if (!found)
        return false;
    if (options.json)
        printLine(QString::fromStdString(Json::array({ found->member }).dump()), false);
    else
        printLine(Description::documentation(*found).join(QLatin1Char('\n')), false);
    return true;
}

} // namespace

int listMembers(Suite& suite, const Options& options)
{
    const SilentPage page;
    QString error;
    const std::vector<Published> all = publishedObjects(page.context(), error);
    if (!error.isEmpty())
        return fail(Failure, error);
    struct Row {
        Json table;
        std::vector<bool> built;
    };
    std::vector<Row> rows;
    QStringList differences;
    QStringList names;
    for (const Published& published : all) {
        names.append(published.name);
        Row row;
        row.table = tableOf(published, suite.notSupported(), false, row.built);
        if (const Json* object = Description::builtIn().object(published.name))
            differences += differencesOf(row.table, row.built, *object, options.denyMask);
        else
            differences.append(published.name + QLatin1String(": published, but not described"));
        if (!options.object.isEmpty() && !isNamed(published.name, options.object, Qt::CaseInsensitive))
            continue;
        if (options.unsupportedOnly) {
            row.built.clear();
            row.table = tableOf(published, suite.notSupported(), true, row.built);
        }
        rows.push_back(std::move(row));
    }
    for (const Json& object : Description::builtIn().objects()) {
        const QString name = Description::fullName(object);
        if (names.contains(name))
            continue;
        if (object["instance"] != "handed out") {
            differences.append(name + QLatin1String(": described, but not published"));
            continue;
        }
        names.append(name);
        if (!options.object.isEmpty() && !isNamed(name, options.object, Qt::CaseInsensitive))
            continue;
        Row row;
        row.table = describedTable(object, options.denyMask, options.unsupportedOnly, row.built);
        rows.push_back(std::move(row));
    }

    if (options.json && !rows.empty()) {
        Json answer = Json::array();
        for (Row& row : rows)
            answer.push_back(std::move(row.table));
        printLine(QString::fromStdString(answer.dump()), false);
    } else {
        for (const Row& row : rows) {
            if (!options.unsupportedOnly || !row.built.empty())
                printTable(row.table, row.built);
        }
        if (options.object.isEmpty()) {
            if (!options.unsupportedOnly)
                printLegend();
        } else if (!documentMember(options) && rows.empty())
            return fail(UsageError,
                QString::fromLatin1("OBJECT: there is no \"%1\"; %2")
                    .arg(options.object, Description::builtIn().advice(options.object)));
    }
    // Whatever is listed is what script sees.
    if (differences.isEmpty())
        return 0;
    return fail(Failure,
        QLatin1String("the description that novahost was built with (types/api.json) differs:\n")
            + differences.join(QLatin1Char('\n')));
}

} // namespace novahost
