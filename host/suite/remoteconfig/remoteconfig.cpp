#include "host/suite/remoteconfig/remoteconfig.h"

#include "host/profile/check.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/account/accountservice.h"
#include "host/suite/skin/skinservice.h"
#include "host/suite/statefile.h"
#include "krt/krt.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QVersionNumber>

namespace suite {

namespace {

Q_LOGGING_CATEGORY(configLog, "suite.remoteconfig")

constexpr char BuiltIn[] = ":/novaconfig/default.json";
constexpr qint64 LargestFile = 4 << 20;
/// Of what one user has chosen, as JSON.
constexpr int LargestChoices = 1 << 20;
constexpr char ByUser[] = "users";
constexpr char Switches[] = "switches";
constexpr char Sections[] = "sections";

StateFile choicesFile()
{
    return StateFile(profile::dataDirectory() + QStringLiteral("/remoteconfig.json"));
}

std::optional<QJsonObject> readConfig(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > LargestFile) {
        qCWarning(configLog, "%s: %s", qPrintable(path),
            file.isOpen() ? "is larger than 4 MiB" : qPrintable(file.errorString()));
        return std::nullopt;
    }
    QFile schema(QStringLiteral(":/novaconfig/remoteconfig.schema.json"));
    if (!schema.open(QIODevice::ReadOnly))
        qFatal("the schema of remote configurations is missing");
    const QByteArray text = file.readAll();
    const profile::Checked checked = profile::parseChecked(
        text, nlohmann::json::parse(schema.readAll().toStdString()), QStringLiteral("remote configuration"));
    for (const QString& error : checked.errors)
        qCWarning(configLog, "%s: %s", qPrintable(path), qPrintable(error));
    if (!checked.errors.isEmpty())
        return std::nullopt;
    return QJsonDocument::fromJson(text).object();
}

/// Whether a fact is one of those that a rule names: a string, or a list of them.
bool isOneOf(const QString& fact, const QJsonValue& wanted)
{
    return wanted.isArray() ? wanted.toArray().contains(fact) : wanted.toString() == fact;
}

/// The place of a user among a hundred, another one for each group.
int shareOf(const QString& group, const KConfigContext& context)
{
    const QByteArray hash = QCryptographicHash::hash(
        (group + QLatin1Char('/') + context.value(QStringLiteral("userId"))).toUtf8(),
        QCryptographicHash::Sha1);
    return static_cast<int>(hash.left(4).toHex().toUInt(nullptr, 16) % 100);
}

bool matches(const QJsonObject& rule, const QString& group, const KConfigContext& context)
{
    const QJsonObject when = rule[QLatin1String("when")].toObject();
    for (auto fact = when.begin(); fact != when.end(); ++fact) {
        if (!isOneOf(context.value(fact.key()), fact.value()))
            return false;
    }
    const QString oldest = rule[QLatin1String("minVersion")].toString();
    if (!oldest.isEmpty()
        && QVersionNumber::fromString(context.value(QStringLiteral("version")))
            < QVersionNumber::fromString(oldest))
        return false;
    return shareOf(group, context) < rule[QLatin1String("percent")].toInt(100);
}

QJsonObject child(const QJsonObject& object, const QString& key)
{
    return object[key].toObject();
}

} // namespace

RemoteConfig& RemoteConfig::instance()
{
    static RemoteConfig config;
    return config;
}

RemoteConfig::RemoteConfig()
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &RemoteConfig::onFileChanged);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &RemoteConfig::onFileChanged);
}

void RemoteConfig::start()
{
    shutDown();
    m_profile.reset();
    if (!profile::serviceOn(QStringLiteral("remoteConfig")))
        return;
    m_service = new KRemoteConfig;
    m_service->setParent(QCoreApplication::instance());
    const AccountService& accounts = AccountService::instance();
    connect(&accounts, &AccountService::currentAccountChanged, m_service, [this] { announceLater(); });
    connect(&accounts, &AccountService::loginInfoChanged, m_service, [this] { announceLater(); });
}

void RemoteConfig::shutDown()
{
    delete m_service;
}

void RemoteConfig::load()
{
    const QString directory = profile::dataDirectory();
    const auto profile = profile::current();
    if (m_directory != directory)
        m_state = choicesFile().read();
    m_directory = directory;
    if (m_profile == profile)
        return;
    m_profile = profile;
    m_decided.clear();
    m_config = {};
    m_file = profile->remoteConfig.source.isEmpty() ? QLatin1String(BuiltIn)
                                                    : profile::expandPath(profile->remoteConfig.source);
    read();
    watch();
}

void RemoteConfig::read()
{
    std::optional<QJsonObject> config = readConfig(m_file);
    if (!config || *config == m_config)
        return;
    m_config = std::move(*config);
    m_updateTime = QDateTime::currentMSecsSinceEpoch();
}

void RemoteConfig::watch()
{
    if (m_file.startsWith(QLatin1Char(':')))
        return;
    // Editors put another file in its place; the directory says so.
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    for (const QString& path : { m_file, QFileInfo(m_file).path() }) {
        if (QFileInfo::exists(path) && !watched.contains(path))
            m_watcher.addPath(path);
    }
}

void RemoteConfig::onFileChanged()
{
    const QJsonObject before = m_config;
    read();
    watch();
    if (m_config != before)
        announceLater();
}

void RemoteConfig::announceLater()
{
    if (!std::exchange(m_isAnnounced, true))
        QMetaObject::invokeMethod(this, &RemoteConfig::announce, Qt::QueuedConnection);
}

void RemoteConfig::announce()
{
    m_isAnnounced = false;
    if (m_service)
        Q_EMIT m_service->sigConfigChanged();
}

QJsonObject RemoteConfig::section(const char* name)
{
    load();
    return m_config[QLatin1String(name)].toObject();
}

QString RemoteConfig::version()
{
    load();
    return m_config[QLatin1String("version")].toString();
}

qint64 RemoteConfig::updateTime()
{
    load();
    return m_updateTime;
}

QStringList RemoteConfig::keys()
{
    QStringList keys = section("data").keys();
    for (auto decided = m_decided.begin(); decided != m_decided.end(); ++decided) {
        if (!keys.contains(decided.key()))
            keys << decided.key();
    }
    keys.sort();
    return keys;
}

QVariant RemoteConfig::data(const QString& key)
{
    const QJsonObject data = section("data");
    const auto decided = m_decided.constFind(key);
    return decided != m_decided.cend() ? *decided : data[key].toVariant();
}

KConfigContext RemoteConfig::translateContext(const KConfigContext& context)
{
    load();
    const QString user = SkinService::user();
    KConfigContext translated = context;
    translated[QStringLiteral("application")] = krt::appName();
    translated[QStringLiteral("channel")] = m_profile->installation.channel;
    translated[QStringLiteral("language")] = krt::i18n::language(0, false);
    translated[QStringLiteral("platform")] = krt::info::platform();
    translated[QStringLiteral("userId")] = user;
    translated[QStringLiteral("version")] = m_profile->installation.version;
    return translated;
}

QStringList RemoteConfig::groups()
{
    return section("groups").keys();
}

QVariant RemoteConfig::groupMatchValue(const QString& group, const KConfigContext& context)
{
    const QJsonObject found = child(section("groups"), group);
    const KConfigContext translated = translateContext(context);
    for (const auto& entry : found[QLatin1String("rules")].toArray()) {
        const QJsonObject rule = entry.toObject();
        if (matches(rule, group, translated))
            return rule[QLatin1String("value")].toVariant();
    }
    return found[QLatin1String("value")].toVariant();
}

QJsonObject RemoteConfig::choices()
{
    return child(child(m_state, QLatin1String(ByUser)), SkinService::user());
}

bool RemoteConfig::choose(const std::function<void(QJsonObject& choices)>& change)
{
    const QString user = SkinService::user();
    bool fits = true;
    QJsonObject changed;
    const bool isWritten = choicesFile().update([&](QJsonObject& content) {
        QJsonObject users = child(content, QLatin1String(ByUser));
        QJsonObject own = child(users, user);
        change(own);
        fits = QJsonDocument(own).toJson(QJsonDocument::Compact).size() <= LargestChoices;
        if (fits) {
            users[user] = own;
            content[QLatin1String(ByUser)] = users;
        }
        changed = content;
    });
    if (!isWritten || !fits)
        return false;
    m_state = changed;
    announceLater();
    return true;
}

int RemoteConfig::authSwitch(const QString& name)
{
    const QJsonObject found = child(section(Switches), name);
    if (found.isEmpty())
        return -1;
    const bool on = found[QLatin1String("on")].toBool();
    if (!found[QLatin1String("users")].toBool())
        return on;
    return child(choices(), QLatin1String(Switches))[name].toBool(on);
}

bool RemoteConfig::setAuthSwitch(const QString& name, bool on)
{
    if (!child(section(Switches), name)[QLatin1String("users")].toBool())
        return false;
    return choose([&](QJsonObject& own) {
        QJsonObject switches = child(own, QLatin1String(Switches));
        switches[name] = on;
        own[QLatin1String(Switches)] = switches;
    });
}

QVariant RemoteConfig::configData(const QString& name, const QString& key)
{
    const QJsonObject sections = section(Sections);
    if (!sections.contains(name))
        return {};
    const QJsonObject own = child(child(choices(), QLatin1String(Sections)), name);
    return (own.contains(key) ? own : child(sections, name))[key].toVariant();
}

bool RemoteConfig::setConfigData(const QString& name, const QString& key, const QVariant& value)
{
    const QJsonValue stored = QJsonValue::fromVariant(value);
    const bool removes = !value.isValid() || value.userType() == QMetaType::Nullptr;
    if (!section(Sections).contains(name) || (!removes && stored.isNull()))
        return false;
    return choose([&](QJsonObject& own) {
        QJsonObject sections = child(own, QLatin1String(Sections));
        QJsonObject values = child(sections, name);
        if (removes)
            values.remove(key);
        else
            values[key] = stored;
        sections[name] = values;
        own[QLatin1String(Sections)] = sections;
    });
}

void RemoteConfig::decide(const QString& key, const QVariant& value)
{
    load();
    m_decided[key] = value;
    m_updateTime = QDateTime::currentMSecsSinceEpoch();
    announceLater();
}

} // namespace suite

using suite::RemoteConfig;

KRemoteConfig* KRemoteConfig::instance()
{
    return RemoteConfig::instance().service();
}

QString KRemoteConfig::version() const
{
    return RemoteConfig::instance().version();
}

qint64 KRemoteConfig::updateTime() const
{
    return RemoteConfig::instance().updateTime();
}

QStringList KRemoteConfig::keys() const
{
    return RemoteConfig::instance().keys();
}

QVariant KRemoteConfig::data(const QString& key) const
{
    return RemoteConfig::instance().data(key);
}

KConfigContext KRemoteConfig::translateContext(const KConfigContext& context) const
{
    return RemoteConfig::instance().translateContext(context);
}

QStringList KRemoteConfig::groups() const
{
    return RemoteConfig::instance().groups();
}

QVariant KRemoteConfig::groupMatchValue(const QString& group, const KConfigContext& context) const
{
    return RemoteConfig::instance().groupMatchValue(group, context);
}

int KRemoteConfig::authSwitch(const QString& name) const
{
    return RemoteConfig::instance().authSwitch(name);
}

bool KRemoteConfig::setAuthSwitch(const QString& name, bool on)
{
    return RemoteConfig::instance().setAuthSwitch(name, on);
}

QVariant KRemoteConfig::configData(const QString& section, const QString& key) const
{
    return RemoteConfig::instance().configData(section, key);
}

bool KRemoteConfig::setConfigData(const QString& section, const QString& key, const QVariant& value)
{
    return RemoteConfig::instance().setConfigData(section, key, value);
}
