#include "host/suite/account/accountservice.h"

#include "host/profile/accountfields.h"
#include "host/profile/directories.h"
#include "host/suite/account/accountdialog.h"
#include "suite/kcoreapplication.h"

#include <QDateTime>
#include <QJsonArray>
#include <QTimer>
#include <algorithm>

namespace suite {

namespace {

using kacctoutsdk::KMemberKind;
using kacctoutsdk::KUserInfo;

// The keys of accounts.json.
constexpr char Current[] = "current";
constexpr char SignedIn[] = "signedIn";
constexpr char Logins[] = "logins";
constexpr char UserChanges[] = "users";
constexpr char MemberChanges[] = "members";

template <typename Entry, typename Record>
const Entry* findEntry(const std::vector<Entry>& entries, QString Record::*id, const QString& wanted)
{
    const auto found = std::ranges::find(entries, wanted, id);
    return found == entries.end() ? nullptr : &*found;
}

/// Adds what one tier says of a privilege: it ends with the last membership that grants it.
void addPrivilege(
    QVector<kacctoutsdk::KPrivilege>& known, const QString& name, bool isGranted, qint64 expireTime)
{
    auto found = std::ranges::find(known, name, &kacctoutsdk::KPrivilege::name);
    if (found == known.end())
        found = known.insert(known.end(), { name, false, 0 });
    if (!isGranted)
        return;
    const bool hasEnd = expireTime != 0 && (!found->isGranted || found->expireTime != 0);
    found->expireTime = hasEnd ? std::max(found->expireTime, expireTime) : 0;
    found->isGranted = true;
}

} // namespace

bool AccountView::isMember(KMemberKind kind) const
{
    switch (kind) {
    case KMemberKind::Nova:
        return grants.contains(QLatin1String("nova"));
    case KMemberKind::Folio:
        return grants.contains(QLatin1String("folio"));
    case KMemberKind::Super:
        return grants.contains(QLatin1String("super"));
    case KMemberKind::Company:
        break;
    }
    return !company.companyId.isEmpty();
}

AccountService::AccountService()
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &AccountService::refresh);
}

AccountService& AccountService::instance()
{
    static AccountService service;
    return service;
}

void AccountService::load() const
{
    if (m_profile)
        return;
    m_profile = profile::current();
    m_file.emplace(profile::dataDirectory() + QStringLiteral("/accounts.json"));
    m_state = m_file->read();
    const QString first = m_profile->account.current;
    if (m_state.isEmpty() && findEntry(m_profile->account.users, &profile::User::userId, first))
        m_state = { { QLatin1String(Current), first }, { QLatin1String(SignedIn), QJsonArray { first } },
            { QLatin1String(Logins), 1 } };
    if (!profile::isDataTemporary())
        m_watcher.addPath(profile::dataDirectory());
}

void AccountService::update(const std::function<void()>& change)
{
    load();
    const QJsonObject before = m_state;
    QJsonObject found;
    m_file->update([&](QJsonObject& content) {
        found = content;
        if (!found.isEmpty())
            m_state = found;
        change();
        content = m_state;
    });
    if (!found.isEmpty())
        announce(before, found);
}

void AccountService::refresh()
{
    const QJsonObject found = m_file->read();
    if (!found.isEmpty())
        announce(std::exchange(m_state, found), found);
}

/// Emits what another process has changed.
void AccountService::announce(const QJsonObject& before, const QJsonObject& now)
{
    const auto differs = [&](const char* section) {
        return before[QLatin1String(section)] != now[QLatin1String(section)];
    };
    if (differs(Current) && !now[QLatin1String(Current)].toString().isEmpty())
        Q_EMIT currentAccountChanged();
    if (differs(Current) || differs(SignedIn) || differs(Logins))
        Q_EMIT loginInfoChanged();
    if (differs(UserChanges))
        Q_EMIT userInfoChanged();
    if (differs(MemberChanges)) {
        Q_EMIT memberInfoChanged();
        Q_EMIT privilegeInfoChanged();
    }
}

QString AccountService::current() const
{
    const QStringList signedIn = accountList();
    const QString userId = m_state[QLatin1String(Current)].toString();
    return !m_hasLeft && signedIn.contains(userId) ? userId : QString();
}

QStringList AccountService::accountList() const
{
    load();
    QStringList list;
    for (const auto& userId : m_state[QLatin1String(SignedIn)].toArray()) {
        if (findEntry(m_profile->account.users, &profile::User::userId, userId.toString()))
            list.append(userId.toString());
    }
    return list;
}

QJsonObject AccountService::findChanges(const char* section, const QString& userId) const
{
    return m_state[QLatin1String(section)].toObject()[userId].toObject();
}

AccountView AccountService::makeView(const QString& userId) const
{
    AccountView view;
    const profile::Account& known = m_profile->account;
    const profile::User* user = findEntry(known.users, &profile::User::userId, userId);
    QMap<QString, qint64> held;
    if (user) {
        const QJsonObject changes = findChanges(UserChanges, userId);
        view.user = *user;
        profile::forEachChangeableUserField([&](QLatin1String key, QString KUserInfo::*member) {
            view.user.*member = changes[key].toString(view.user.*member);
        });
        view.session =
            QStringLiteral("%1-session-%2").arg(userId).arg(m_state[QLatin1String(Logins)].toInt());
        for (const kacctoutsdk::KMembership& membership : user->members)
            held.insert(membership.tier, membership.expireTime);
        const QJsonObject memberChanges = findChanges(MemberChanges, userId);
        for (auto change = memberChanges.begin(); change != memberChanges.end(); ++change) {
            if (!change.value().toBool())
                held.remove(change.key());
            else if (!held.contains(change.key()))
                held.insert(change.key(), 0);
        }
        if (const auto* company =
                findEntry(known.companies, &kacctoutsdk::KCompanyInfo::companyId, view.user.companyId))
            view.company = *company;
    }
    QVariantList heldTiers;
    for (const profile::Tier& tier : known.tiers) {
        const qint64 expires = held.value(tier.name, 0);
        const bool isMember =
            held.contains(tier.name) && (expires == 0 || expires > QDateTime::currentMSecsSinceEpoch());
        view.members.append({ tier.name, isMember, expires });
        if (isMember)
            view.grants += tier.grants;
        for (const QString& privilege : tier.privileges)
            addPrivilege(view.rights, privilege, isMember, expires);
        if (held.contains(tier.name))
            heldTiers.append(QVariantMap {
                { QStringLiteral("tier"), tier.name }, { QStringLiteral("expireTime"), expires } });
    }
    view.raw = { { QStringLiteral("userId"), userId }, { QStringLiteral("tiers"), heldTiers } };
    return view;
}

kacctoutsdk::IKAccount* AccountService::getAccount(const QString& userId)
{
    if (!profile::serviceOn(QStringLiteral("currentAccount")))
        return nullptr;
    if (!userId.isEmpty() && !accountList().contains(userId))
        return nullptr;
    const QString known = userId.isEmpty() ? current() : userId;
    return &(m_views[known] = makeView(known));
}

/// The user of the wanted way to sign in, or else the first one who is not current.
QString AccountService::proposeUser(const QVariantMap& params) const
{
    QString now = current();
    const QString mode = params.value(QStringLiteral("qrcode")).toBool()
        ? QStringLiteral("qrcode")
        : params.value(QStringLiteral("loginSrc")).toString();
    const std::vector<profile::User>& users = m_profile->account.users;
    if (const profile::User* user = findEntry(users, &profile::User::loginMode, mode);
        user && !mode.isEmpty())
        return user->userId;
    for (const profile::User& user : users) {
        if (user.userId != now)
            return user.userId;
    }
    return now;
}

bool AccountService::login(const QVariantMap& params)
{
    load();
    if (m_login || m_switching || m_profile->account.users.empty())
        return false;
    m_login = params.value(QStringLiteral("login.params.confirmId")).toString();
    AccountDialog dialog { profile::DialogKind::Login, QStringLiteral("Sign in"), QStringLiteral("userId"),
        {}, proposeUser(params), params.value(QStringLiteral("bShowModal")).toBool(),
        params.value(QStringLiteral("bTopWindow")).toBool() };
    for (const profile::User& user : m_profile->account.users)
        dialog.choices.push_back({ user.userId, QStringLiteral("%1 (%2)").arg(user.nickName, user.account) });
    choose(dialog, [this](const QString& userId) {
        const QString confirmId = *std::exchange(m_login, std::nullopt);
        if (!userId.isEmpty())
            signIn(userId, confirmId);
    });
    return true;
}

bool AccountService::logout(const QVariantMap&)
{
    if (current().isEmpty())
        return false;
    QTimer::singleShot(0, this, &AccountService::signOut);
    return true;
}

bool AccountService::upgradeMember(const QVariantMap&)
{
    if (current().isEmpty() || m_upgrading)
        return false;
    m_upgrading = true;
    const std::vector<profile::Tier>& tiers = m_profile->account.tiers;
    AccountDialog dialog { profile::DialogKind::Upgrade, QStringLiteral("Upgrade membership"),
        QStringLiteral("tier"), {}, tiers.empty() ? QString() : tiers.front().name };
    for (const profile::Tier& tier : tiers)
        dialog.choices.push_back({ tier.name, tier.name });
    choose(dialog, [this](const QString& tier) {
        m_upgrading = false;
        if (!tier.isEmpty())
            changeMembership(tier, true);
    });
    return true;
}

QString AccountService::generateConfirmId()
{
    return QStringLiteral("confirm-%1").arg(++m_confirmIds);
}

kacctoutsdk::KLoginConfirmation AccountService::confirmLoginSuccess(const QString& confirmId)
{
    if (m_login == confirmId || (m_switching && m_switchConfirmId == confirmId))
        return kacctoutsdk::KLoginConfirmation::Waiting;
    if (m_succeeded.isEmpty() || m_succeeded != confirmId)
        return kacctoutsdk::KLoginConfirmation::Ended;
    m_succeeded.clear();
    return kacctoutsdk::KLoginConfirmation::Succeeded;
}

void AccountService::signIn(const QString& userId, const QString& confirmId)
{
    const QString before = current();
    const QString wanted = userId.isEmpty() ? proposeUser({}) : userId;
    if (before.isEmpty() || before == wanted)
        return setCurrent(wanted, confirmId);
    m_switching = true;
    m_switchConfirmId = confirmId;
    m_hasLeft = true;
    Q_EMIT loginInfoChanged();
    QTimer::singleShot(0, this, [this, wanted, confirmId] { setCurrent(wanted, confirmId); });
}

void AccountService::setCurrent(const QString& userId, const QString& confirmId)
{
    const bool another = current() != userId;
    update([&] {
        QJsonArray signedIn = m_state[QLatin1String(SignedIn)].toArray();
        if (!signedIn.contains(userId))
            signedIn.append(userId);
        m_state[QLatin1String(Current)] = userId;
        m_state[QLatin1String(SignedIn)] = signedIn;
        m_state[QLatin1String(Logins)] = m_state[QLatin1String(Logins)].toInt() + 1;
    });
    m_hasLeft = false;
    m_switchConfirmId.clear();
    m_succeeded = confirmId;
    if (another)
        Q_EMIT currentAccountChanged();
    Q_EMIT loginInfoChanged();
    m_switching = false;
}

void AccountService::signOut()
{
    const QString before = current();
    if (before.isEmpty())
        return;
    update([&] {
        QJsonArray left;
        for (const auto& userId : m_state[QLatin1String(SignedIn)].toArray()) {
            if (userId.toString() != before)
                left.append(userId);
        }
        if (m_state[QLatin1String(Current)].toString() == before)
            m_state[QLatin1String(Current)] = QString();
        m_state[QLatin1String(SignedIn)] = left;
    });
    Q_EMIT loginInfoChanged();
}

void AccountService::recordChange(const char* section, const QString& key, const QJsonValue& value)
{
    const QString user = current();
    update([&] {
        QJsonObject all = m_state[QLatin1String(section)].toObject();
        QJsonObject own = findChanges(section, user);
        own[key] = value;
        all[user] = own;
        m_state[QLatin1String(section)] = all;
    });
}

void AccountService::changeUser(const QString& key, const QString& value)
{
    if (current().isEmpty())
        return;
    recordChange(UserChanges, key, value);
    Q_EMIT userInfoChanged();
}

void AccountService::changeMembership(const QString& tier, bool isMember)
{
    if (current().isEmpty())
        return;
    recordChange(MemberChanges, tier, isMember);
    Q_EMIT memberInfoChanged();
    Q_EMIT privilegeInfoChangedWithDetail({ { tier, isMember } });
}

QStringList AccountService::userKeys()
{
    QStringList keys;
    profile::forEachChangeableUserField([&](QLatin1String key, auto) { keys << key; });
    return keys;
}

} // namespace suite

kacctoutsdk::KAccountSdkProxy* KCoreApplication::getAccountSDK()
{
    return profile::serviceOn(QStringLiteral("accountSdk")) ? &suite::AccountService::instance() : nullptr;
}
