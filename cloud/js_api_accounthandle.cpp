#include "cloud/js_api_accounthandle.h"

#include "suite/kcoreapplication.h"

namespace jsapi {

using kacctoutsdk::IKAccount;
using kacctoutsdk::KAccountSdkProxy;
using kacctoutsdk::KLoginConfirmation;

KJsApiAccountHandle::KJsApiAccountHandle(IKJSExtentionApiEvent& account)
    : m_account(account)
    , m_service(
          KCoreApplication::getAccountSDK, [this](KAccountSdkProxy& service) { return connectTo(service); })
{
}

KJsApiAccountHandle::Service::Connections KJsApiAccountHandle::connectTo(KAccountSdkProxy& service)
{
    // Another service may know of another login; listeners are informed when the call in hand has returned.
    if (m_followed)
        announceLater();
    else
        m_known = currentLogin();
    m_followed = true;
    return {
        connect(&service, SIGNAL(loginInfoChanged()), this, SLOT(announceLogin())),
        connect(&service, SIGNAL(currentAccountChanged()), this, SLOT(announceLogin())),
        connect(&service, SIGNAL(userInfoChanged()), this, SLOT(onUserInfoChanged())),
        connect(&service, SIGNAL(memberInfoChanged()), this, SLOT(onMemberInfoChanged())),
        connect(&service, SIGNAL(privilegeInfoChanged()), this, SLOT(onPrivilegeInfoChanged())),
        connect(&service, SIGNAL(privilegeInfoChangedWithDetail(QVariantMap)), this,
            SLOT(onPrivilegeInfoChanged(QVariantMap))),
    };
}

bool KJsApiAccountHandle::login(QVariantMap params, const JSContextEnv& page)
{
    const QString pageId = params.value(heapString("confirmId")).toString();
    const QString id = pageId.isEmpty() ? QString() : service()->generateConfirmId();
    if (!id.isEmpty()) {
        params.insert(heapString("login.params.confirmId"), id);
        // Before the login, whose success may be reported from within.
        settleConfirmations();
        m_confirmations.push_back({ id, page, pageId });
    }
    const bool accepted = service()->login(params);
    if (!accepted)
        std::erase_if(m_confirmations, [&](const Confirmation& waiting) { return waiting.id == id; });
    return accepted;
}

MemberInfo KJsApiAccountHandle::readMemberInfo(const IKAccount& account)
{
    MemberInfo info;
    for (const kacctoutsdk::KMembership& membership : account.memberships())
        info.members.insert(membership.tier, { membership.isMember, membership.expireTime });
    info.rawData = account.rawMemberInfo();
    return info;
}

KJsApiAccountHandle::Login KJsApiAccountHandle::currentLogin() const
{
    const IKAccount* account = service() ? service()->getAccount({}) : nullptr;
    if (!account || !account->isLoggedIn())
        return {};
    const kacctoutsdk::KUserInfo user = account->userInfo();
    return { user.userId, user.nickName, account->novasid() };
}

void KJsApiAccountHandle::announceLogin()
{
    if (!service())
        return;
    // From within a listener: the others first get what they have not got yet.
    if (m_announcing) {
        m_changedMeanwhile = true;
        return;
    }
    m_announcing = true;
    const Login now = currentLogin();
    const Login before = std::exchange(m_known, now);
    const bool left = !before.userId.isEmpty() && before.userId != now.userId;
    const bool switching = service()->isSwitching() || (left && !now.userId.isEmpty());
    if (left)
        announce(LogoutEvent, { before.userId, before.userName, {} }, switching);
    if (!now.userId.isEmpty() && (before.userId != now.userId || before.novasid != now.novasid))
        announce(LoginEvent, now, switching);
    settleConfirmations();
    m_announcing = false;
    if (std::exchange(m_changedMeanwhile, false))
        announceLater();
}

void KJsApiAccountHandle::announceLater()
{
    QMetaObject::invokeMethod(this, &KJsApiAccountHandle::announceLogin, Qt::QueuedConnection);
}

void KJsApiAccountHandle::settleConfirmations()
{
    std::vector<Confirmation> succeeded;
    std::vector<Confirmation> waiting;
    for (Confirmation& confirmation : std::exchange(m_confirmations, {})) {
        const auto state =
            service() ? service()->confirmLoginSuccess(confirmation.id) : KLoginConfirmation::Ended;
        if (state == KLoginConfirmation::Succeeded)
            succeeded.push_back(std::move(confirmation));
        else if (state == KLoginConfirmation::Waiting)
            waiting.push_back(std::move(confirmation));
    }
    m_confirmations = std::move(waiting);
    for (const Confirmation& confirmation : succeeded)
        m_account.send(ConfirmEvent, { {}, confirmation.pageId, m_known.userId }, confirmation.page);
}

void KJsApiAccountHandle::onUserInfoChanged()
{
    if (const Login now = currentLogin(); now.userId == m_known.userId)
        m_known.userName = now.userName;
    m_account.send(UserInfoEvent, CallStatus());
}

void KJsApiAccountHandle::onMemberInfoChanged()
{
    const IKAccount* account = service()->getAccount({});
    m_account.send(MemberInfoEvent, { {}, account ? readMemberInfo(*account) : MemberInfo() });
}

void KJsApiAccountHandle::onPrivilegeInfoChanged(const QVariantMap& detail)
{
    if (m_privilege)
        m_privilege->send(PrivilegeEvent, { {}, detail });
}

void KJsApiAccountHandle::announce(const Event<LoginChange>& event, const Login& login, bool switching)
{
    m_account.send(event, { {}, switching, login.userId, login.userName, login.novasid });
}

} // namespace jsapi
