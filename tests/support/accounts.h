// An account service whose user the test chooses.
#pragma once

#include "tests/support/suite.h"

#include <utility>

namespace support {

class FakeAccounts final : public kacctoutsdk::KAccountSdkProxy, public kacctoutsdk::IKAccount {
public:
    explicit FakeAccounts(const char* userId = "")
        : user(QString::fromLatin1(userId))
    {
        accounts = this;
    }
    ~FakeAccounts() override
    {
        if (accounts == this)
            accounts = nullptr;
    }

    bool login(const QVariantMap& params) override { return asked = params, accepts; }
    bool logout(const QVariantMap&) override { return accepts; }
    bool upgradeMember(const QVariantMap& params) override { return asked = params, accepts; }
    kacctoutsdk::IKAccount* getAccount(const QString&) override { return this; }
    QStringList accountList() const override { return {}; }
    bool isSwitching() const override { return false; }
    QString generateConfirmId() override { return QStringLiteral("id %1").arg(++m_ids); }
    kacctoutsdk::KLoginConfirmation confirmLoginSuccess(const QString& id) override
    {
        return states.value(id, kacctoutsdk::KLoginConfirmation::Ended);
    }

    bool isLoggedIn() const override { return !user.isEmpty(); }
    kacctoutsdk::KUserInfo userInfo() const override
    {
        kacctoutsdk::KUserInfo info;
        info.userId = user;
        return info;
    }
    kacctoutsdk::KCompanyInfo companyInfo() const override { return {}; }
    QVector<kacctoutsdk::KMembership> memberships() const override { return {}; }
    QVariantMap rawMemberInfo() const override { return {}; }
    bool isMember(kacctoutsdk::KMemberKind) const override { return false; }
    QString novasid() const override { return {}; }
    QVector<kacctoutsdk::KPrivilege> privileges() const override { return {}; }

    /// Another user signs in, or nobody is signed in any more.
    void become(const char* userId)
    {
        user = QString::fromLatin1(userId);
        Q_EMIT loginInfoChanged();
    }

    QString user;
    QVariantMap asked;                                     ///< by the last login or upgrade
    QMap<QString, kacctoutsdk::KLoginConfirmation> states; ///< of logins by their confirmation ids
    bool accepts = true;

private:
    int m_ids = 0;
};

} // namespace support
