// KJsApiAccountHandle: the library's one connection to the suite's account service.
#pragma once

#include "cloud/servicefollower.h"
#include "framework/events.h"
#include "suite/kaccountsdk.h"

/// Follows the account service, whichever it is at the moment, and tells listeners what changes. Owned by the
/// Account object, whose hub its events go through. Needs an application. [GUI thread]
class KJsApiAccountHandle : public QObject {
    Q_OBJECT

public:
    // The events of the Account object.
    static constexpr char LoginEvent[] = "event.account.login";
    static constexpr char LogoutEvent[] = "event.account.logout";
    static constexpr char UserInfoEvent[] = "event.user.info.changed";
    static constexpr char MemberInfoEvent[] = "event.account.Member.info.changed";
    /// To the page that asked for it only.
    static constexpr char ConfirmEvent[] = "confirmLoginSuccess";
    /// Of the Privilege object.
    static constexpr char PrivilegeEvent[] = "event.privilege.info.changed";

    explicit KJsApiAccountHandle(IKJSExtentionApiEvent& account);

    /// Looks which service there is now, and connects to it. Calls nobody back.
    void follow() { m_service.follow(); }
    /// The service that is followed, or null.
    kacctoutsdk::KAccountSdkProxy* service() const { return m_service.service(); }
    /// Whose listeners hear of privileges; borrowed from the Account object.
    void setPrivilege(IJSExtentionObject* privilege) { m_privilege = privilege; }
    /// Starts a login; needs a service. Where `params` have a "confirmId" its success is told to that page as
    /// ConfirmEvent, once.
    bool login(QVariantMap params, const JSContextEnv& page);

    /// {members, rawData} of an account.
    static QVariantMap memberInfo(const kacctoutsdk::IKAccount& account);

private:
    using Service = KServiceFollower<kacctoutsdk::KAccountSdkProxy>;
    struct Login {
        QString userId;
        QString userName;
        QString novasid;
    };
    struct Confirmation {
        QString id;
        JSContextEnv page;
        QString pageId;
    };

    Service::Connections connectTo(kacctoutsdk::KAccountSdkProxy& service);
    void onUserInfoChanged();
    void onMemberInfoChanged();
    void onPrivilegeInfoChanged(const QVariantMap& detail);

    Login currentLogin() const;
    void announceLogin();
    void announceLater();
    void settleConfirmations();
    void tell(const char* event, const Login& login, bool switching);
    void tell(const char* event, const QVariantMap& payload);

    IKJSExtentionApiEvent& m_account;
    IJSExtentionObject* m_privilege = nullptr;
    Service m_service;
    Login m_known; ///< what listeners have been told
    bool m_followed = false;
    bool m_announcing = false;
    bool m_changedMeanwhile = false; ///< since the announcement under way began
    std::vector<Confirmation> m_confirmations;
};
