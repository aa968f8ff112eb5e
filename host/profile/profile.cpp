#include "host/profile/profile.h"

#include "host/cloudwire/userid.h"
#include "host/profile/accountfields.h"
#include "host/profile/check.h"

#include <QFile>
#include <limits>
#include <mutex>

namespace nlohmann {

// Conversions to Qt types, of JSON that was checked against the schema.
template <> struct adl_serializer<QString> {
    static void from_json(const json& from, QString& to)
    {
        to = QString::fromStdString(from.get<std::string>());
    }
};

template <> struct adl_serializer<QStringList> {
    static void from_json(const json& from, QStringList& to)
    {
        to.clear();
        for (const json& item : from)
            to << item.get<QString>();
    }
};

template <typename Value> struct adl_serializer<QMap<QString, Value>> {
    static void from_json(const json& from, QMap<QString, Value>& to)
    {
        to.clear();
        for (const auto& entry : from.items())
            to.insert(QString::fromStdString(entry.key()), entry.value().get<Value>());
    }
};

/// An integer becomes an int where it fits, null an invalid QVariant.
template <> struct adl_serializer<QVariant> {
    static void from_json(const json& from, QVariant& to)
    {
        to = QVariant();
        if (from.is_string())
            to = from.get<QString>();
        else if (from.is_boolean())
            to = from.get<bool>();
        else if (from.is_number_unsigned() && from.get<quint64>() > std::numeric_limits<qint64>::max())
            to = from.get<quint64>();
        else if (from.is_number_integer())
            to = integer(from.get<qint64>());
        else if (from.is_number())
            to = from.get<double>();
        else if (from.is_array())
            to = list(from);
        else if (from.is_object())
            to = from.get<QVariantMap>();
    }

private:
    static QVariantList list(const json& from)
    {
        QVariantList items;
        for (const json& item : from)
            items.append(item.get<QVariant>());
        return items;
    }

    static QVariant integer(qint64 number)
    {
        const int narrow = static_cast<int>(number);
        return narrow == number ? QVariant(narrow) : QVariant(number);
    }
};

} // namespace nlohmann

namespace profile {

template <typename Value> static void readField(const nlohmann::json& from, const char* key, Value& to)
{
    if (const auto found = from.find(key); found != from.end())
        found->get_to(to);
}

template <typename Record, typename Fields>
static void readFields(const nlohmann::json& from, Record& to, const Fields& fields)
{
    for (const auto& field : fields)
        std::visit([&](auto member) { readField(from, field.key, to.*member); }, field.member);
}

} // namespace profile

// In this namespace, where the JSON library looks for them.
namespace kacctoutsdk {

static void from_json(const nlohmann::json& from, KCompanyInfo& to)
{
    profile::readFields(from, to, profile::CompanyFields);
}

static void from_json(const nlohmann::json& from, KMembership& to)
{
    profile::readFields(from, to, profile::MembershipFields);
}

} // namespace kacctoutsdk

// Reads each key of a section into the field of its name.
#define PROFILE_SECTION(Section, ...)                                                                        \
    static void from_json(const nlohmann::json& nlohmann_json_j, Section& nlohmann_json_t)                   \
    {                                                                                                        \
        NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(NLOHMANN_JSON_FROM, __VA_ARGS__))                           \
    }

// The same for an element of a list, in which missing keys keep the default of their field.
#define PROFILE_ENTRY(Entry, ...)                                                                            \
    static void from_json(const nlohmann::json& nlohmann_json_j, Entry& nlohmann_json_t)                     \
    {                                                                                                        \
        const Entry nlohmann_json_default_obj;                                                               \
        NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(NLOHMANN_JSON_FROM_WITH_DEFAULT, __VA_ARGS__))              \
    }

namespace engine {

PROFILE_ENTRY(PolicyRule, origin, allow, deny, permissions)

} // namespace engine

namespace profile {

NLOHMANN_JSON_SERIALIZE_ENUM(DialogMode,
    { { DialogMode::Auto, "auto" }, { DialogMode::Show, "show" }, { DialogMode::Answer, "answer" } })
NLOHMANN_JSON_SERIALIZE_ENUM(DialogKind,
    { { DialogKind::Any, nullptr }, { DialogKind::File, "file" }, { DialogKind::Files, "files" },
        { DialogKind::Folder, "folder" }, { DialogKind::Save, "save" }, { DialogKind::Cloud, "cloud" },
        { DialogKind::Panel, "panel" }, { DialogKind::Access, "access" }, { DialogKind::Login, "login" },
        { DialogKind::Upgrade, "upgrade" }, { DialogKind::Color, "color" },
        { DialogKind::Confirm, "confirm" } })
NLOHMANN_JSON_SERIALIZE_ENUM(AddressMode,
    { { AddressMode::Auto, "auto" }, { AddressMode::Open, "open" }, { AddressMode::Record, "record" } })
NLOHMANN_JSON_SERIALIZE_ENUM(CloudTab,
    { { CloudTab::Recent, "recent" }, { CloudTab::Cloud, "cloud" }, { CloudTab::Share, "share" },
        { CloudTab::Favorite, "favorite" }, { CloudTab::Company, "company" } })

PROFILE_ENTRY(DialogAnswer, dialog, accept, files, values)
PROFILE_ENTRY(CloudFile, tab, path, groupId, parentId, fileId, folder)
static void from_json(const nlohmann::json& from, User& to)
{
    readFields(from, to, UserFields);
    readField(from, "members", to.members);
}

PROFILE_ENTRY(Tier, name, grants)
PROFILE_SECTION(Account, current, users, companies, tiers)
PROFILE_SECTION(Dialogs, mode, answers)
PROFILE_SECTION(Desktop, openAddresses)
PROFILE_SECTION(Application, name, platform)
PROFILE_SECTION(Installation, version, guid, uuid, hdid, channel)
PROFILE_SECTION(Directories, officeInstallRoot, officeData, officeHome, velmoraHome, blacklistedDownloads,
    pluginDownloads)
PROFILE_SECTION(Product, strings, features, configurations)
PROFILE_SECTION(Files, unsafeTypes)
PROFILE_SECTION(Access, granted)
PROFILE_SECTION(Cloud, program, uploadBytesPerSecond, closedToUploads, openToUploads)
PROFILE_SECTION(Language, name, region)
PROFILE_SECTION(Dpi, scale)
PROFILE_SECTION(Plugins, directories, bytesPerSecond)
PROFILE_SECTION(Windows, autoHide)
PROFILE_SECTION(Skin, current, directories)
PROFILE_SECTION(RemoteConfig, source)
PROFILE_SECTION(Log, maxFileSizeKiB, keptFiles)
PROFILE_SECTION(Browser, applicationId, sessionId, grouped, groupMark1OffsetMs, groupMark2OffsetMs)
PROFILE_SECTION(Profile, application, installation, directories, product, files, access, dialogs, desktop,
    cloudFiles, account, cloud, domains, intranetType, language, dpi, plugins, windows, skin, remoteConfig,
    theme, log, browser, policy, services)

namespace {

using nlohmann::json;
using Snapshot = std::shared_ptr<const Profile>;

QByteArray readEmbedded(const QString& name)
{
    QFile file(QStringLiteral(":/novaprofile/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is missing from the profile library", qPrintable(name));
    return file.readAll();
}

const json& schema()
{
    static const json parsed = json::parse(schemaText().toStdString());
    return parsed;
}

const json& defaults()
{
    static const json parsed = [] {
        const Checked checked = parseChecked(defaultText(), schema());
        if (!checked.errors.isEmpty())
            qFatal("the default profile: %s", qPrintable(checked.errors.join(QLatin1Char('\n'))));
        return checked.document;
    }();
    return parsed;
}

Snapshot makeProfile(const json& document)
{
    return std::make_shared<const Profile>(document.get<Profile>());
}

struct Current {
    std::mutex mutex;
    Snapshot profile = makeProfile(defaults());
};

Current& state()
{
    static Current current;
    return current;
}

/// Puts a changed copy in the place of the current profile.
template <typename Change> void change(Change change)
{
    std::lock_guard lock(state().mutex);
    auto changed = std::make_shared<Profile>(*state().profile);
    change(*changed);
    state().profile = std::move(changed);
}

} // namespace

/// Ids that the cloud process would refuse, and with them everybody who is signed in.
static QStringList findWrongIds(const json& document)
{
    QStringList errors;
    const json account = document.value("account", json::object());
    for (const auto& [list, key] : { std::pair("users", "userId"), std::pair("companies", "companyId") }) {
        int place = 0;
        for (const json& entry : account.value(list, json::array())) {
            if (!cloudwire::isUserId(entry.at(key).get<std::string>()))
                errors << QStringLiteral(
                    "account.%1[%2].%3: must be a text of at most %4 bytes without control characters")
                              .arg(QLatin1String(list), QString::number(place), QLatin1String(key))
                              .arg(cloudwire::MaxUserIdBytes);
            ++place;
        }
    }
    return errors;
}

/// Rules that would not do what their author expects.
static QStringList findWrongRules(const json& document)
{
    return engine::findPolicyErrors(
        document.value("policy", json::array()).get<std::vector<engine::PolicyRule>>());
}

QString load(const QString& file)
{
    const QString prefix = QStringLiteral("profile \"%1\": ").arg(file);
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return prefix + QStringLiteral("can not be read: ") + source.errorString();
    const QByteArray text = source.readAll();
    if (source.error() != QFileDevice::NoError)
        return prefix + QStringLiteral("can not be read: ") + source.errorString();

    Checked checked = parseChecked(text, schema());
    if (checked.errors.isEmpty())
        checked.errors = findWrongIds(checked.document) + findWrongRules(checked.document);
    if (!checked.errors.isEmpty())
        return prefix + checked.errors.join(QLatin1Char('\n') + prefix);

    json merged = defaults();
    merged.merge_patch(checked.document);
    Snapshot made = makeProfile(merged);
    std::lock_guard lock(state().mutex);
    state().profile = std::move(made);
    return {};
}

std::shared_ptr<const Profile> current()
{
    Current& current = state();
    std::lock_guard lock(current.mutex);
    return current.profile;
}

const QStringList& serviceNames()
{
    static const QStringList names = [] {
        QStringList found;
        for (const auto& entry : schema().at("properties").at("services").at("properties").items())
            found << QString::fromStdString(entry.key());
        return found;
    }();
    return names;
}

bool serviceOn(const QString& service)
{
    return current()->services.value(service, false);
}

bool switchOff(const QString& service, QString* error)
{
    if (!serviceNames().contains(service)) {
        if (error)
            *error = QStringLiteral("there is no service \"%1\"; use one of %2")
                         .arg(service, serviceNames().join(QStringLiteral(", ")));
        return false;
    }
    change([&](Profile& profile) { profile.services[service] = false; });
    return true;
}

void setScale(double scale)
{
    change([&](Profile& profile) { profile.dpi.scale = qBound(0.5, scale, 8.0); });
}

QByteArray schemaText()
{
    return readEmbedded(QStringLiteral("profile.schema.json"));
}

QByteArray defaultText()
{
    return readEmbedded(QStringLiteral("default_profile.json"));
}

} // namespace profile
