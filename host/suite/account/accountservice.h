// The account service of the stand-in. Users, companies and tiers come from the profile ("account"); who is
// signed in, and what has changed since, from accounts.json below the data directory.
#pragma once

#include "host/profile/profile.h"
#include "suite/kaccountsdk.h"

#include <QJsonObject>
#include <map>
#include <optional>

namespace suite {

/// An account as it was when the service was asked for it.
class AccountView final : public kacctoutsdk::IKAccount {
public:
    bool isLoggedIn() const override { return !user.userId.isEmpty(); }
    kacctoutsdk::KUserInfo userInfo() const override { return user; }
    kacctoutsdk::KCompanyInfo companyInfo() const override { return company; }
    QVector<kacctoutsdk::KMembership> memberships() const override { return members; }
    QVariantMap rawMemberInfo() const override { return raw; }
    bool isMember(kacctoutsdk::KMemberKind kind) const override;
    QString novasid() const override { return session; }

    kacctoutsdk::KUserInfo user;
    kacctoutsdk::KCompanyInfo company;
    QVector<kacctoutsdk::KMembership> members;
    QStringList grants; ///< what the memberships count as
    QVariantMap raw;
    QString session;
};

/// [GUI thread] for all. Changes that pages ask for are made from the event loop.
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

    // What happens outside of pages. The current account is meant; without one nothing happens.

    /// Signs a user of the profile in; the one who was is not current any more but stays signed in. An empty
    /// id means the one whom a login would propose.
    void signIn(const QString& userId, const QString& confirmId = {});
    void signOut();
    /// Changes a text of the user information.
    void changeUser(const QString& key, const QString& value);
    void changeMembership(const QString& tier, bool isMember);
    /// The texts of the user information that can change.
    static QStringList userKeys();

private:
    AccountService() = default;

    void begin() const;
    void save();
    QString current() const;
    QString proposed(const QVariantMap& params) const;
    QJsonObject changesOf(const char* section, const QString& userId) const;
    AccountView viewOf(const QString& userId) const;
    void become(const QString& userId, const QString& confirmId);
    void put(const char* section, const QString& key, const QJsonValue& value);

    // Read at the first use.
    mutable std::shared_ptr<const profile::Profile> m_profile;
    mutable QString m_file;
    mutable QJsonObject m_state;

    std::map<QString, AccountView> m_views; ///< lent to callers
    std::optional<QString> m_login;         ///< the confirmation id of the login under way
    QString m_succeeded;                    ///< that of the last one, until it is told
    bool m_switching = false;
    QString m_switchConfirmId; ///< of the login that switches
    bool m_upgrading = false;
    int m_confirmIds = 0;
};

} // namespace suite
