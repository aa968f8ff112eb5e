#include "cloud/js_api_accounthandle.h"

#include "suite/kcoreapplication.h"
#include "vexlite/jsapiutil.h"

using kacctoutsdk::IKAccount;
using kacctoutsdk::KAccountSdkProxy;
using kacctoutsdk::KLoginConfirmation;

namespace {

std::vector<KJSVariant> payloadOf(QVariantMap values)
{
    values.insert(ownText("callstatus"), ownText("ok"));
    KJSVariant object;
    KJSApiUtil::ConvertQVariantToJSVariant(values, object);
    return { std::move(object) };
}

} // namespace

KJsApiAccountHandle::KJsApiAccountHandle(IKJSExtentionApiEvent& account)
    : m_account(account)
    , m_service(
          KCoreApplication::getAccountSDK, [this](KAccountSdkProxy& service) { return connectTo(service); })
{
}

KJsApiAccountHandle::Service::Connections KJsApiAccountHandle::connectTo(KAccountSdkProxy& service)
{
    using Proxy = KAccountSdkProxy;
    using Handle = KJsApiAccountHandle;
    // Another service may know of another login; listeners hear of it when the call in hand has returned.
    if (m_followed)
        announceLater();
    else
        m_known = currentLogin();
    m_followed = true;
    return {
        connect(&service, &Proxy::loginInfoChanged, this, &Handle::announceLogin),
        connect(&service, &Proxy::currentAccountChanged, this, &Handle::announceLogin),
        connect(&service, &Proxy::userInfoChanged, this, &Handle::onUserInfoChanged),
        connect(&service, &Proxy::memberInfoChanged, this, &Handle::onMemberInfoChanged),
        connect(&service, &Proxy::privilegeInfoChanged, this, [this] { onPrivilegeInfoChanged({}); }),
        connect(&service, &Proxy::privilegeInfoChangedWithDetail, this, &Handle::onPrivilegeInfoChanged),
    };
}

bool KJsApiAccountHandle::login(QVariantMap params, const JSContextEnv& page)
{
    const QString pageId = params.value(ownText("confirmId")).toString();
    const QString id = pageId.isEmpty() ? QString() : service()->generateConfirmId();
    if (!id.isEmpty()) {
        params.insert(ownText("login.params.confirmId"), id);
        // Before the login: its success may be told from within.
        settleConfirmations();
        m_confirmations.push_back({ id, page, pageId });
    }
    const bool accepted = service()->login(params);
    if (!accepted)
        std::erase_if(m_confirmations, [&](const Confirmation& waiting) { return waiting.id == id; });
    return accepted;
}

QVariantMap KJsApiAccountHandle::memberInfo(const IKAccount& account)
{
    QVariantMap members;
    for (const kacctoutsdk::KMembership& membership : account.memberships())
        members.insert(membership.tier,
            QVariantMap { { ownText("isMember"), membership.isMember },
                { ownText("expireTime"), membership.expireTime } });
    return { { ownText("members"), members }, { ownText("rawData"), account.rawMemberInfo() } };
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
    // From within a listener: what the others have not heard yet comes first.
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
        tell(LogoutEvent, { before.userId, before.userName, {} }, switching);
    if (!now.userId.isEmpty() && (before.userId != now.userId || before.novasid != now.novasid))
        tell(LoginEvent, now, switching);
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
        m_account.dispatch(ownText(ConfirmEvent), confirmation.page,
            payloadOf(
                { { ownText("confirmId"), confirmation.pageId }, { ownText("userId"), m_known.userId } }));
}

void KJsApiAccountHandle::onUserInfoChanged()
{
    if (const Login now = currentLogin(); now.userId == m_known.userId)
        m_known.userName = now.userName;
    tell(UserInfoEvent, QVariantMap());
}

void KJsApiAccountHandle::onMemberInfoChanged()
{
    const IKAccount* account = service()->getAccount({});
    tell(MemberInfoEvent, { { ownText("data"), account ? memberInfo(*account) : QVariantMap() } });
}

void KJsApiAccountHandle::onPrivilegeInfoChanged(const QVariantMap& detail)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    IJSEventHubFactory* factory = core ? core->EventHubs() : nullptr;
    if (!factory || !m_privilege)
        return;
    IJSEventHub* hub = factory->ClassHub(static_cast<std::int32_t>(m_privilege->GetTypeId()));
    hub->Dispatch(
        ownText(PrivilegeEvent), JSContextEnv::everyContext(), payloadOf({ { ownText("data"), detail } }));
}

void KJsApiAccountHandle::tell(const char* event, const Login& login, bool switching)
{
    tell(event,
        { { ownText("isSwitching"), switching }, { ownText("userId"), login.userId },
            { ownText("userName"), login.userName }, { ownText("novasid"), login.novasid } });
}

void KJsApiAccountHandle::tell(const char* event, const QVariantMap& payload)
{
    m_account.dispatch(ownText(event), JSContextEnv::everyContext(), payloadOf(payload));
}
