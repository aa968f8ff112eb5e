// The account service of the stand-in. Users, companies and tiers come from the profile ("account");
// accounts.json in the data directory stores who is signed in and what has changed, for all processes that share it.
#pragma once

#include "host/profile/profile.h"
#include "host/suite/statefile.h"
#include "suite/kaccountsdk.h"

#include <QFileSystemWatcher>
#include <QJsonObject>
#include <functional>
#include <map>
#include <optional>

namespace suite {

/// A snapshot of an account, made by getAccount().
class AccountView final : public kacctoutsdk::IKAccount {
public:
    bool isLoggedIn() const override { return !user.userId.isEmpty(); }
    kacctoutsdk::KUserInfo userInfo() const override { return user; }
    kacctoutsdk::KCompanyInfo companyInfo() const override { return company; }
    QVector<kacctoutsdk::KMembership> memberships() const override { return members; }
    QVariantMap rawMemberInfo() const override { return raw; }
    bool isMember(kacctoutsdk::KMemberKind kind) const override;
    QString novasid() const override { return session; }
    QVector<kacctoutsdk::KPrivilege> privileges() const override { return rights; }

    kacctoutsdk::KUserInfo user;
    kacctoutsdk::KCompanyInfo company;
    QVector<kacctoutsdk::KMembership> members;
    QStringList grants; ///< of the current memberships
    QVector<kacctoutsdk::KPrivilege> rights;
    QVariantMap raw;
    QString session;
};

/// [GUI thread] for all. Changes requested by pages are made from the event loop.
class AccountService final : public kacctoutsdk::KAccountSdkProxy {
public:
    /// The service, switched on or not.
    static AccountService& instance();

    bool login(const QVariantMap& params) override;
    bool logout(const QVariantMap& params) override;
    bool upgradeMember(const QVariantMap& params) override;
    kacctoutsdk::IKAccount* getAccount(const QString& userId) override;
    QStringList accountList() const override;
    bool isSwitching() const override { return m_switching; }
    QString generateConfirmId() override;
    kacctoutsdk::KLoginConfirmation confirmLoginSuccess(const QString& confirmId) override;

    // Changes that no page requested, of the current account; they do nothing without one.

    /// Signs a user of the profile in, who becomes the current one; the former stays signed in. An empty id
    /// means the user whom a login would propose.
    void signIn(const QString& userId, const QString& confirmId = {});
    void signOut();
    /// Changes a text of the user information.
    void changeUser(const QString& key, const QString& value);
    void changeMembership(const QString& tier, bool isMember);
    /// The keys that changeUser() accepts.
    static QStringList userKeys();

private:
    AccountService();

    void load() const;
    /// Reads the file again, which another process may have changed, and writes it with the change of m_state.
    void update(const std::function<void()>& change);
    void refresh();
    void announce(const QJsonObject& before, const QJsonObject& now);
    QString current() const;
    QString proposeUser(const QVariantMap& params) const;
    QJsonObject findChanges(const char* section, const QString& userId) const;
    AccountView makeView(const QString& userId) const;
    void setCurrent(const QString& userId, const QString& confirmId);
    void recordChange(const char* section, const QString& key, const QJsonValue& value);

    // Loaded at the first use.
    mutable std::shared_ptr<const profile::Profile> m_profile;
    mutable std::optional<StateFile> m_file;
    mutable QJsonObject m_state;
    mutable QFileSystemWatcher m_watcher; ///< of the directory, since the file is replaced

    std::map<QString, AccountView> m_views; ///< returned by getAccount()
    std::optional<QString> m_login;         ///< the confirmation id, while a login is under way
    QString m_succeeded;                    ///< that of the last one, until it is heldTiers
    bool m_switching = false;
    bool m_hasLeft = false;    ///< one account has stopped being the current one, the next is not it yet
    QString m_switchConfirmId; ///< of that login
    bool m_upgrading = false;
    int m_confirmIds = 0;
};

} // namespace suite
