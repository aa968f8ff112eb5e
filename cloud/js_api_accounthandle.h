// KJsApiAccountHandle: the library's one connection to the suite's account service.
#pragma once

#include "framework/events.h"
#include "framework/servicefollower.h"
#include "suite/kaccountsdk.h"

namespace jsapi {

/// Every payload begins with this.
struct CallStatus {
    QString callstatus = heapString("ok");
    static constexpr auto fields()
    {
        return std::tuple(property("callstatus", &CallStatus::callstatus, "always `ok`"));
    }
};

struct LoginChange : CallStatus {
    bool isSwitching = false;
    QString userId;
    QString userName;
    QString novasid;
    static constexpr auto fields()
    {
        using Self = LoginChange;
        return std::tuple_cat(CallStatus::fields(),
            std::tuple(
                property("isSwitching", &Self::isSwitching, "whether one user takes another one's place"),
                property("userId", &Self::userId, "who was signed in, or out"),
                property("userName", &Self::userName, "the user's name"),
                property("novasid", &Self::novasid, "the session that began; empty when one has ended")));
    }
};

struct LoginConfirmation : CallStatus {
    QString confirmId;
    QString userId;
    static constexpr auto fields()
    {
        using Self = LoginConfirmation;
        return std::tuple_cat(CallStatus::fields(),
            std::tuple(property("confirmId", &Self::confirmId, "as the page passed it to `login`"),
                property("userId", &Self::userId, "who was signed in")));
    }
};

struct Membership {
    bool isMember;
    qlonglong expireTime;
    static constexpr auto fields()
    {
        return std::tuple(property("isMember", &Membership::isMember, "whether the user is one"),
            property("expireTime", &Membership::expireTime,
                "when that ends, in milliseconds since 1970 (UTC); 0 when it does not, or is not known"));
    }
};

struct MemberInfo {
    QMap<QString, Membership> members;
    QVariantMap rawData;
    static constexpr auto fields()
    {
        return std::tuple(
            property("members", &MemberInfo::members, "by membership tier, all that the service has"),
            property("rawData", &MemberInfo::rawData, "the memberships as the service's server has them"));
    }
};

struct MemberInfoChange : CallStatus {
    MemberInfo data;
    static constexpr auto fields()
    {
        return std::tuple_cat(CallStatus::fields(),
            std::tuple(property("data", &MemberInfoChange::data, "the memberships there are now")));
    }
};

struct PrivilegeChange : CallStatus {
    QVariantMap data;
    static constexpr auto fields()
    {
        return std::tuple_cat(CallStatus::fields(),
            std::tuple(property("data", &PrivilegeChange::data, "what the service says of the change")));
    }
};

inline constexpr Event<LoginChange> LoginEvent { "event.account.login", "A user has been signed in." };
inline constexpr Event<LoginChange> LogoutEvent { "event.account.logout", "A user has been signed out." };
inline constexpr Event<CallStatus> UserInfoEvent { "event.user.info.changed",
    "What is known of the user has changed." };
inline constexpr Event<MemberInfoChange> MemberInfoEvent { "event.account.Member.info.changed",
    "The user's memberships have changed." };
inline constexpr Event<LoginConfirmation> ConfirmEvent { "confirmLoginSuccess",
    "A login that this page started with a `confirmId` has succeeded." };
inline constexpr Event<PrivilegeChange> PrivilegeEvent { "event.privilege.info.changed",
    "The user's membership privileges have changed." };

/// Follows the account service, whichever it is at the moment, and informs listeners of what changes. Owned
/// by the Account object, whose hub its events go through. Needs an application. [GUI thread]
class KJsApiAccountHandle : public QObject {
    Q_OBJECT

public:
    explicit KJsApiAccountHandle(IKJSExtentionApiEvent& account);

    /// Looks which service there is now, and connects to it. Calls nobody back.
    void follow() { m_service.follow(); }
    /// The service that is followed, or null.
    kacctoutsdk::KAccountSdkProxy* service() const { return m_service.service(); }
    /// Whose listeners get PrivilegeEvent; borrowed from the Account object.
    void setPrivilege(IKJSExtentionApiEvent* privilege) { m_privilege = privilege; }
    /// Starts a login; needs a service. Where `params` have a "confirmId" that page gets ConfirmEvent when it
    /// has succeeded, once.
    bool login(QVariantMap params, const JSContextEnv& page);

    static MemberInfo readMemberInfo(const kacctoutsdk::IKAccount& account);

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
    Login currentLogin() const;
    void announceLater();
    void settleConfirmations();
    void announce(const Event<LoginChange>& event, const Login& login, bool switching);

    IKJSExtentionApiEvent& m_account;
    IKJSExtentionApiEvent* m_privilege = nullptr;
    Service m_service;
    Login m_known; ///< as listeners know it
    bool m_followed = false;
    bool m_announcing = false;
    bool m_changedMeanwhile = false; ///< since the announcement under way began
    std::vector<Confirmation> m_confirmations;

public Q_SLOTS:
    // For the service.
    void announceLogin();
    void onUserInfoChanged();
    void onMemberInfoChanged();
    void onPrivilegeInfoChanged(const QVariantMap& detail = {});
};

} // namespace jsapi
