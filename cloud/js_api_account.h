#pragma once

#include "cloud/js_api_accounthandle.h"

#include <memory>

namespace jsapi {

class KJsApiPrivilege;

/// The application's part of an Account object, as a parameter: refused with EmptyHandle where the suite runs
/// no application.
struct AccountHandle {
    KJsApiAccountHandle* handle = nullptr;
};
/// The account service as well: refused with "Accountsdk is not initialized.".
struct AccountService : AccountHandle {
    kacctoutsdk::KAccountSdkProxy* operator->() const { return handle->service(); }
};
/// And the current account: refused with "Current account is not initialized." before the service has begun.
struct CurrentAccount : AccountService {
    const kacctoutsdk::IKAccount& account() const { return *current; }
    const kacctoutsdk::IKAccount* current = nullptr;
};

struct KnownAccount;

/// "NovaExtension.Account": the signed-in user, login and logout, and their changes.
class KJsApiAccount final : public KJCExtendJsEventObj<KJsApiAccount> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Account";
    static const MemberList& members();

    struct LoginOptions;
    struct UpgradeOptions;

    Answer<Handle<KJsApiPrivilege>> privilege(const JSContextEnv& page);
    Answer<bool> login(const AccountService& service, const JSContextEnv& page, const LoginOptions& options);
    Answer<bool> logout(const AccountService& service, const QString& source);
    Answer<bool> upgradeMember(const AccountService& service, const UpgradeOptions& options);
    Answer<bool> isLoggedIn(const CurrentAccount& current);
    Answer<QString> getUserId(const CurrentAccount& current);
    Answer<kacctoutsdk::KUserInfo> getUserInfo(const CurrentAccount& current);
    Answer<MemberInfo> getMemberInfo(const CurrentAccount& current);
    Answer<kacctoutsdk::KCompanyInfo> getCompanyInfo(const CurrentAccount& current);
    Answer<std::vector<KnownAccount>> getAccountListInfo(const CurrentAccount& current);
    Answer<bool> isNovaMember(const CurrentAccount& current);
    Answer<bool> isFolioMember(const CurrentAccount& current);
    Answer<bool> isSuperMember(const CurrentAccount& current);
    Answer<bool> isCompanyMember(const CurrentAccount& current);
    Answer<bool> isMultiAccount(const CurrentAccount& current);

    Answer<AccountHandle> findHandle(const JSContextEnv& page);
    Answer<AccountService> findService(const JSContextEnv& page);
    Answer<CurrentAccount> findCurrent(const JSContextEnv& page);

    /// The handle, following the service that there is now; null without an application.
    KJsApiAccountHandle* handle();
    /// Listeners of any kind have the handle follow the service.
    void prepareEvents() override { handle(); }

private:
    KRef<IJSExtentionObject> m_privilege;
    std::unique_ptr<KJsApiAccountHandle> m_handle;
};

/// The current account of the service, whether anybody is signed in or not, as a parameter.
struct PrivilegedAccount {
    const kacctoutsdk::IKAccount* current = nullptr;
};

struct Privilege {
    QString name;
    bool isGranted;
    qlonglong expireTime;
    static constexpr auto fields()
    {
        return std::tuple(property("name", &Privilege::name, ""),
            property("isGranted", &Privilege::isGranted, "whether the user has it"),
            property("expireTime", &Privilege::expireTime,
                "when that ends, in milliseconds since 1970 (UTC); 0 when it is not granted or does not end"));
    }
};

/// "NovaExtension.Account.Privilege": what the user's memberships allow, and its changes.
class KJsApiPrivilege final : public KJCExtendJsEventObj<KJsApiPrivilege> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Account.Privilege";
    static const MemberList& members();

    Answer<std::vector<Privilege>> getPrivileges(const PrivilegedAccount& account);
    Answer<bool> hasPrivilege(const PrivilegedAccount& account, const Demanded<QString>& name);

    Answer<PrivilegedAccount> findAccount(const JSContextEnv& page);
};

} // namespace jsapi
