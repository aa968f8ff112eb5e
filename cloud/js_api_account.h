#pragma once

#include "cloud/js_api_accounthandle.h"

#include <memory>

/// "NovaExtension.Account": the signed-in user, login and logout, and their changes.
///
/// Every method but the four generic event members fails with 3 "empty handle." where the suite runs no
/// application. Members that ask or act fail with 3 "Accountsdk is not initialized." without an account
/// service, those that ask with 3 "Current account is not initialized." before the service has begun. With
/// nobody signed in they answer empty texts, lists and false.
class KJsApiAccount final : public KJCExtendJsEventObj<KJsApiAccount> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Account";
    static const MemberList& members();

    /// Property: the Privilege object.
    Reply privilege(Call& call);

    // The three answer a boolean: whether the service takes the request on. What becomes of it is told by
    // events. Failure: 1 "missing required parameters.".

    /// {src, bizSrc?, loginSrc?, from?, confirmId?: strings, qrcode?, bShowModal?, bTopWindow?: booleans}.
    /// With a confirmId the page hears "confirmLoginSuccess" when this login has succeeded.
    Reply login(Call& call);
    /// The source, a string.
    Reply logout(Call& call);
    /// {csource, payUrl?, src?, confirmId?, appName?: strings, parentWidget?: number}.
    Reply upgradeMember(Call& call);

    // Each takes a function and answers undefined; removing without one removes all of the page's. Failures:
    // 1 "wrong parameters." (no function), 3 "Event service error.".
    Reply addLoginListener(Call& call);
    Reply removeLoginListener(Call& call);
    Reply addLogoutListener(Call& call);
    Reply removeLogoutListener(Call& call);
    Reply addUserInfoChangedListener(Call& call);
    Reply removeUserInfoChangedListener(Call& call);

    Reply isLoggedIn(Call& call);
    Reply getUserId(Call& call);
    /// -> texts, but for regtime, a number, isPlus, a boolean, and roleList, a list of texts.
    Reply getUserInfo(Call& call);
    /// -> {members: {tier: {isMember, expireTime}}, rawData}, with every tier of the service.
    Reply getMemberInfo(Call& call);
    /// -> texts.
    Reply getCompanyInfo(Call& call);
    /// -> a list of {userId, account, nickName, pic, companyId, companyName, isCurrent}: who is signed in on
    /// this machine.
    Reply getAccountListInfo(Call& call);
    Reply isNovaMember(Call& call);
    Reply isFolioMember(Call& call);
    Reply isSuperMember(Call& call);
    Reply isCompanyMember(Call& call);
    /// -> boolean: more than one user is signed in on this machine.
    Reply isMultiAccount(Call& call);

protected:
    /// Listeners of any kind have the handle follow the service.
    void prepareEvents() override { handle(); }

private:
    using HubChange = KResult (IJSEventHub::*)(const QString&, const JSContextEnv&, const KJSVariant&);

    /// The handle, following the service that there is now; null without an application.
    KJsApiAccountHandle* handle();
    Reply changeListeners(Call& call, HubChange change, const char* event);
    template <typename Action> Reply withService(Call& call, Action action);
    template <typename Query> Reply withAccount(Call& call, Query query);
    Reply isMember(Call& call, kacctoutsdk::KMemberKind kind);

    KRef<IJSExtentionObject> m_privilege;
    std::unique_ptr<KJsApiAccountHandle> m_handle;
};

/// "NovaExtension.Account.Privilege": changes of the user's membership privileges.
class KJsApiPrivilege final : public KJCExtendJsEventObj<KJsApiPrivilege> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Account.Privilege";
    static const MemberList& members();
};
