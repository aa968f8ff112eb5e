#include "host/novahost/members.h"

#include "host/novahost/output.h"

#include <nlohmann/json.hpp>

namespace novahost {

namespace {

using Json = nlohmann::ordered_json;

/// The order in which the suite presents its objects; what is not named here follows in the order of the
/// names.
constexpr const char* Presented[] = { "Hive", "ByteBufferManager", "FileSystem", "Network", "Novaoffice",
    "TelemetrySdk", "Log", "ConfigCenter", "CirrusConfig", "PluginManager", "Webview", "WebviewMgr",
    "Profile", "Crypto", "CloudDoc", "SettingsManager", "Utils", "Product", "Tools", "Event", "Payment",
    "Skin", "Account", "CloudAdapter", "AiDocsChat", "SyncFolder", "WebDocsControl", "KContract" };

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

QStringList presentedNames()
{
    QStringList left = vexlite::Core::instance()->objectNames();
    QStringList names;
    for (const char* name : Presented) {
        if (left.removeOne(QString::fromLatin1(name)))
            names.append(QString::fromLatin1(name));
    }
    return names + left;
}

std::vector<Published> publishedObjects(const JSContextEnv& context, QString& error)
{
    vexlite::Core& core = *vexlite::Core::instance();
    std::vector<Published> all;
    for (const QString& name : presentedNames()) {
        vexlite::BoundObject object = core.bindObject(context, name);
        if (!object.members) {
            error = QString::fromLatin1("%1: the object can not be bound (0x%2)")
                        .arg(name)
                        .arg(object.status, 8, 16, QLatin1Char('0'));
            return {};
        }
        all.push_back({ QLatin1String("NovaExtension.") + name, std::move(object) });
    }
    for (const QString& name : core.creatableClasses()) {
        const vexlite::Ref<IJSExtentionObject> object = core.createUninitialised(name);
        vexlite::BoundObject bound = core.bindSubObject(context, object.get());
        if (bound.members)
            all.push_back({ name, std::move(bound) });
    }
    return all;
}

/// The table as {"object", "mode", "members"}.
Json described(const Published& published, JSMemberInvoke unsupported, bool unsupportedOnly)
{
    const IJSMemberList& list = *published.object.members.get();
    std::uint32_t mode = 0;
    published.object.object->GetInstanceMode(&mode);
    Json members = Json::array();
    for (std::int32_t i = 0; i < list.Count(); ++i) {
        const bool built = !unsupported || list.Invoke(i) != unsupported;
        if (unsupportedOnly && built)
            continue;
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

QString typeName(std::int64_t type)
{
    static const std::map<std::int64_t, const char*> names { { 0, "nothing" }, { 8, "string" },
        { 11, "boolean" }, { 12, "variant" }, { 13, "object" }, { 27, "array" }, { 0x8004, "any" } };
    const auto found = names.find(type);
    return found == names.end() ? QString::number(type) : QString::fromLatin1(found->second);
}

void printTable(const Json& object)
{
    const auto mode = object["mode"].get<std::uint32_t>();
    printLine(QString::fromLatin1("%1  (%2, %3 members)")
                  .arg(QString::fromStdString(object["object"]),
                      QString::fromLatin1(mode == 3 ? "shared"
                              : mode == 0           ? "handed out"
                                                    : "one a page"))
                  .arg(object["members"].size()),
        false);
    for (const Json& member : object["members"]) {
        QStringList params;
        for (const Json& param : member["params"]) {
            const QString type = typeName(param["type"]);
            params.append(param["name"].is_null()
                    ? type
                    : QString::fromStdString(param["name"]) + QLatin1String(": ") + type);
        }
        const QString name = QString::fromStdString(member["name"]);
        const QString signature = member["kind"] == 1
            ? name
            : name + QLatin1Char('(') + params.join(QLatin1String(", ")) + QLatin1Char(')');
        printLine(QString::fromLatin1("  %1 -> %2  0x%3")
                      .arg(signature, -44)
                      .arg(typeName(member["result"]), -8)
                      .arg(member["mask"].get<std::uint32_t>(), 0, 16),
            false);
    }
}

/// Whether `wanted` is the end of the name: the whole of it, or some of its last parts. Nothing means all.
bool isNamed(const QString& name, const QString& wanted)
{
    return wanted.isEmpty() || name.compare(wanted, Qt::CaseInsensitive) == 0
        || name.endsWith(QLatin1Char('.') + wanted, Qt::CaseInsensitive);
}

QString advice(const std::vector<Published>& all, const QString& wanted)
{
    QStringList similar;
    for (const Published& published : all) {
        if (published.name.contains(wanted, Qt::CaseInsensitive))
            similar.append(published.name);
    }
    return similar.isEmpty() ? QStringLiteral("`novahost members` lists all")
                             : QLatin1String("there is ") + similar.join(QLatin1String(", "));
}

} // namespace

int listMembers(Suite& suite, const Options& options)
{
    const SilentPage page;
    QString error;
    const std::vector<Published> all = publishedObjects(page.context(), error);
    if (!error.isEmpty())
        return fail(Failure, error);
    Json answer = Json::array();
    for (const Published& published : all) {
        if (isNamed(published.name, options.object))
            answer.push_back(described(published, suite.notSupported(), options.unsupportedOnly));
    }
    if (answer.empty())
        return fail(UsageError,
            QString::fromLatin1("OBJECT: there is no \"%1\"; %2")
                .arg(options.object, advice(all, options.object)));
    if (options.json) {
        printLine(QString::fromStdString(answer.dump()), false);
        return 0;
    }
    for (const Json& object : answer) {
        if (!options.unsupportedOnly || !object["members"].empty())
            printTable(object);
    }
    return 0;
}

} // namespace novahost
