#include "host/suite/skin/skinservice.h"

#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/account/accountservice.h"
#include "host/suite/skin/palette.h"
#include "host/suite/statefile.h"
#include "suite/kcoreapplication.h"

#include <QJsonArray>
#include <QLoggingCategory>

namespace suite {

namespace {

Q_LOGGING_CATEGORY(skinLog, "suite.skin")

// The keys of skins.json: choices by user, each with these.
constexpr char Users[] = "users";
constexpr char SkinName[] = "skin";
constexpr char Areas[] = "areas";
constexpr char History[] = "history";

StateFile stateFile()
{
    return StateFile(profile::dataDirectory() + QStringLiteral("/skins.json"));
}

} // namespace

SkinService& SkinService::instance()
{
    static SkinService service;
    return service;
}

void SkinService::start()
{
    shutDown();
    m_profile.reset();
    load();
    show();
    if (!profile::serviceOn(QStringLiteral("skin")))
        return;
    m_kskin = new KSkin;
    m_kskin->setObjectName(QStringLiteral("novaoffice"));
    m_kskin->setParent(QCoreApplication::instance());
    const AccountService& accounts = AccountService::instance();
    QObject::connect(&accounts, &AccountService::currentAccountChanged, m_kskin, [this] { follow(); });
    QObject::connect(&accounts, &AccountService::loginInfoChanged, m_kskin, [this, &accounts] {
        // While one account takes the place of another there is nobody for a moment.
        if (!accounts.isSwitching())
            follow();
    });
}

void SkinService::shutDown()
{
    delete m_kskin;
}

QString SkinService::user()
{
    kacctoutsdk::KAccountSdkProxy* sdk = KCoreApplication::getAccountSDK();
    const kacctoutsdk::IKAccount* account = sdk ? sdk->getAccount({}) : nullptr;
    return account ? account->userInfo().userId : QString();
}

/// Reads what is stored, and finds the skin anew when the profile is another one.
void SkinService::load()
{
    const QString directory = profile::dataDirectory();
    const auto profile = profile::current();
    if (m_profile == profile && m_directory == directory)
        return;
    if (m_directory != directory)
        m_state = stateFile().read();
    m_directory = directory;
    m_profile = profile;
    m_skin = find();
}

Skin SkinService::find() const
{
    const QString chosen =
        m_state[QLatin1String(Users)].toObject()[user()].toObject()[QLatin1String(SkinName)].toString();
    for (const QString& name : { chosen, m_profile->skin.current, QStringLiteral("light") }) {
        QString error;
        if (name.isEmpty())
            continue;
        if (std::optional<Skin> skin = loadSkin(name, error))
            return *skin;
        qCWarning(skinLog, "%s", qPrintable(error));
    }
    return {};
}

const Skin& SkinService::current()
{
    load();
    return m_skin;
}

void SkinService::follow()
{
    load();
    // Another process may have changed it.
    m_state = stateFile().read();
    use(find());
}

void SkinService::use(Skin skin)
{
    if (skin.name == m_skin.name && skin.theme == m_skin.theme)
        return;
    m_skin = std::move(skin);
    show();
    if (m_kskin)
        Q_EMIT m_kskin->sigSkinChanged();
}

void SkinService::show() const
{
    showInWindows(m_skin);
}

void SkinService::change(const QString& userId, const std::function<void(QJsonObject& choice)>& change)
{
    stateFile().update([&](QJsonObject& state) {
        QJsonObject users = state[QLatin1String(Users)].toObject();
        QJsonObject choice = users[userId].toObject();
        change(choice);
        users[userId] = choice;
        state[QLatin1String(Users)] = users;
        m_state = state;
    });
}

bool SkinService::setUserUsingSkin(const QString& userId, const QString& name, const QStringList& areas)
{
    load();
    QString error;
    std::optional<Skin> skin = loadSkin(name, error);
    if (!skin) {
        qCWarning(skinLog, "%s", qPrintable(error));
        return false;
    }
    change(userId, [&](QJsonObject& choice) {
        choice[QLatin1String(SkinName)] = name;
        choice[QLatin1String(Areas)] = QJsonArray::fromStringList(areas);
    });
    if (userId == user())
        use(std::move(*skin));
    return true;
}

void SkinService::addCurrentUserSkinHistory(const QString& name)
{
    load();
    QString error;
    if (!loadSkin(name, error))
        return;
    change(user(), [&](QJsonObject& choice) {
        constexpr int LongestHistory = 20;
        QJsonArray names { name };
        for (const auto& former : choice[QLatin1String(History)].toArray()) {
            if (former != name && names.size() < LongestHistory)
                names.append(former);
        }
        choice[QLatin1String(History)] = names;
    });
}

bool SkinService::choose(const QString& name)
{
    if (!setUserUsingSkin(user(), name, {}))
        return false;
    addCurrentUserSkinHistory(name);
    return true;
}

} // namespace suite

QString KSkin::getUserId() const
{
    return suite::SkinService::user();
}

bool KSkin::setUserUsingSkin(const QString& userId, const QString& skin, const QStringList& areas)
{
    return suite::SkinService::instance().setUserUsingSkin(userId, skin, areas);
}

void KSkin::addCurrentUserSkinHistory(const QString& skin)
{
    suite::SkinService::instance().addCurrentUserSkinHistory(skin);
}
