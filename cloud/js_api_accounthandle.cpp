#include "cloud/js_api_accounthandle.h"

#include "suite/kcoreapplication.h"
#include "vexlite/jsapiutil.h"

using kacctoutsdk::IKAccount;
using kacctoutsdk::KAccountSdkProxy;
using kacctoutsdk::KLoginConfirmation;

namespace {

constexpr int RetryMs = 1000;

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
{
    m_retry.setInterval(RetryMs);
    connect(&m_retry, &QTimer::timeout, this, &KJsApiAccountHandle::follow);
}

void KJsApiAccountHandle::follow()
{
    KAccountSdkProxy* service = KCoreApplication::getAccountSDK();
    if (service && service == m_service)
        return;
    if (m_service)
        m_service->disconnect(this);
    m_service = service;
    if (!service) {
        if (!m_retry.isActive())
            m_retry.start();
        return;
    }
    m_retry.stop();
    connect(service, &KAccountSdkProxy::loginInfoChanged, this, &KJsApiAccountHandle::onLoginInfoChanged);
    connect(
        service, &KAccountSdkProxy::currentAccountChanged, this, &KJsApiAccountHandle::onLoginInfoChanged);
    connect(service, &KAccountSdkProxy::userInfoChanged, this, &KJsApiAccountHandle::onUserInfoChanged);
    connect(service, &KAccountSdkProxy::memberInfoChanged, this, &KJsApiAccountHandle::onMemberInfoChanged);
    connect(service, &KAccountSdkProxy::privilegeInfoChanged, this, [this] { onPrivilegeInfoChanged({}); });
    connect(service, &KAccountSdkProxy::privilegeInfoChangedWithDetail, this,
        &KJsApiAccountHandle::onPrivilegeInfoChanged);
    connect(service, &QObject::destroyed, this, [this] { m_retry.start(); });
    // Another service may know of another login; listeners hear of it when the call in hand has returned.
    if (m_followed)
        QMetaObject::invokeMethod(this, &KJsApiAccountHandle::announceLogin, Qt::QueuedConnection);
    else
        m_known = currentLogin();
    m_followed = true;
}

bool KJsApiAccountHandle::login(QVariantMap params, const JSContextEnv& page)
{
    const QString pageId = params.value(ownText("confirmId")).toString();
    const QString id = pageId.isEmpty() ? QString() : m_service->generateConfirmId();
    if (!id.isEmpty()) {
        params.insert(ownText("login.params.confirmId"), id);
        // Before the login: its success may be told from within.
        settleConfirmations();
        m_confirmations.push_back({ id, page, pageId });
    }
    const bool accepted = m_service->login(params);
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
    const IKAccount* account = m_service ? m_service->getAccount({}) : nullptr;
    if (!account || !account->isLoggedIn())
        return {};
    const kacctoutsdk::KUserInfo user = account->userInfo();
    return { user.userId, user.nickName, account->novasid() };
}

void KJsApiAccountHandle::onLoginInfoChanged()
{
    // Told from within a listener: what the others have not heard yet comes first.
    if (m_announcing)
        QMetaObject::invokeMethod(this, &KJsApiAccountHandle::announceLogin, Qt::QueuedConnection);
    else
        announceLogin();
}

void KJsApiAccountHandle::announceLogin()
{
    if (!m_service || m_announcing)
        return;
    m_announcing = true;
    const Login now = currentLogin();
    const Login before = std::exchange(m_known, now);
    const bool left = !before.userId.isEmpty() && before.userId != now.userId;
    const bool switching = m_service->isSwitching() || (left && !now.userId.isEmpty());
    if (left)
        tell(LogoutEvent, { before.userId, before.userName, {} }, switching);
    if (!now.userId.isEmpty() && (before.userId != now.userId || before.novasid != now.novasid))
        tell(LoginEvent, now, switching);
    settleConfirmations();
    m_announcing = false;
}

void KJsApiAccountHandle::settleConfirmations()
{
    std::vector<Confirmation> succeeded;
    std::vector<Confirmation> waiting;
    for (Confirmation& confirmation : std::exchange(m_confirmations, {})) {
        const auto state =
            m_service ? m_service->confirmLoginSuccess(confirmation.id) : KLoginConfirmation::Ended;
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
    const IKAccount* account = m_service->getAccount({});
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
