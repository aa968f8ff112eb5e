#include "cloud/js_api_account.h"

#include "suite/kcoreapplication.h"

#include <QCoreApplication>
#include <algorithm>

namespace jsapi {

using kacctoutsdk::IKAccount;
using kacctoutsdk::KCompanyInfo;
using kacctoutsdk::KMemberKind;
using kacctoutsdk::KUserInfo;

namespace {

constexpr Failure NoAccountService { ErrorCode::OperationFailed, "Accountsdk is not initialized." };
constexpr Failure NoCurrentAccount { ErrorCode::OperationFailed, "Current account is not initialized." };

} // namespace

template <>
struct Argument<AccountHandle> : ResourceArgument<AccountHandle, &KJsApiAccount::findHandle, EmptyHandle> {
};
template <>
struct Argument<AccountService>
    : ResourceArgument<AccountService, &KJsApiAccount::findService, EmptyHandle, NoAccountService> {
};
template <>
struct Argument<CurrentAccount> : ResourceArgument<CurrentAccount, &KJsApiAccount::findCurrent, EmptyHandle,
                                      NoAccountService, NoCurrentAccount> {
};

template <>
struct Argument<PrivilegedAccount>
    : ResourceArgument<PrivilegedAccount, &KJsApiPrivilege::findAccount, NoAccountService, NoCurrentAccount> {
};

template <> struct Fields<KUserInfo> {
    static constexpr auto list()
    {
        return std::tuple(property("userId", &KUserInfo::userId, ""),
            property("account", &KUserInfo::account, "what the user signs in with"),
            property("nickName", &KUserInfo::nickName, ""),
            property("pic", &KUserInfo::pic, "the address of the portrait"),
            property("thumbnailLocalPath", &KUserInfo::thumbnailLocalPath, "the portrait on this machine"),
            property("email", &KUserInfo::email, ""), property("phoneNumber", &KUserInfo::phoneNumber, ""),
            property("status", &KUserInfo::status, ""), property("sex", &KUserInfo::sex, ""),
            property("loginMode", &KUserInfo::loginMode, "the way in which the user signed in"),
            property("country", &KUserInfo::country, ""), property("province", &KUserInfo::province, ""),
            property("city", &KUserInfo::city, ""), property("address", &KUserInfo::address, ""),
            property("postal", &KUserInfo::postal, ""),
            property("companyId", &KUserInfo::companyId, "empty for one who belongs to no company"),
            property("regtime", &KUserInfo::regtime,
                "when the user registered, in milliseconds since 1970 (UTC); 0 when that is not known"),
            property("deviceStatus", &KUserInfo::deviceStatus, ""),
            property("isPlus", &KUserInfo::isPlus, ""), property("roleList", &KUserInfo::roleList, ""));
    }
};

template <> struct Fields<KCompanyInfo> {
    static constexpr auto list()
    {
        return std::tuple(property("companyId", &KCompanyInfo::companyId, ""),
            property("name", &KCompanyInfo::name, ""), property("email", &KCompanyInfo::email, ""),
            property("phoneNumber", &KCompanyInfo::phoneNumber, ""),
            property("description", &KCompanyInfo::description, ""),
            property("address", &KCompanyInfo::address, ""), property("city", &KCompanyInfo::city, ""),
            property("country", &KCompanyInfo::country, ""),
            property("province", &KCompanyInfo::province, ""), property("postal", &KCompanyInfo::postal, ""),
            property("fax", &KCompanyInfo::fax, ""),
            property("adminId", &KCompanyInfo::adminId, "the user who administrates it"));
    }
};

/// One of the users who are signed in on this machine.
struct KnownAccount {
    QString userId;
    QString account;
    QString nickName;
    QString pic;
    QString companyId;
    QString companyName;
    bool isCurrent;
    static constexpr auto fields()
    {
        using Self = KnownAccount;
        return std::tuple(property("userId", &Self::userId, ""),
            property("account", &Self::account, "what the user signs in with"),
            property("nickName", &Self::nickName, ""),
            property("pic", &Self::pic, "the address of the portrait"),
            property("companyId", &Self::companyId, "empty for one who belongs to no company"),
            property("companyName", &Self::companyName, ""),
            property("isCurrent", &Self::isCurrent, "whether this is the current user"));
    }
};

struct KJsApiAccount::LoginOptions {
    QString src;
    QString bizSrc;
    QString confirmId;
    QString loginSrc;
    QString from;
    std::optional<bool> qrcode;
    std::optional<bool> bShowModal;
    std::optional<bool> bTopWindow;
    static constexpr auto fields()
    {
        using Self = LoginOptions;
        return strictly(std::tuple(
            required("src", &Self::src, "who has the user sign in", MissingParameters, MissingParameters),
            optional("bizSrc", &Self::bizSrc, "for what"),
            optional("confirmId", &Self::confirmId,
                "of the page's choice: `confirmLoginSuccess` carries it when this login has succeeded"),
            optional("loginSrc", &Self::loginSrc, "the way to sign in"),
            optional("from", &Self::from, "where in the page"),
            optional("qrcode", &Self::qrcode, "begin with a code to scan"),
            optional("bShowModal", &Self::bShowModal, "the dialog is modal"),
            optional("bTopWindow", &Self::bTopWindow, "the dialog stays on top")));
    }
};

struct KJsApiAccount::UpgradeOptions {
    QString csource;
    QString payUrl;
    QString src;
    QString confirmId;
    QString appName;
    std::optional<std::int32_t> parentWidget;
    static constexpr auto fields()
    {
        using Self = UpgradeOptions;
        return strictly(std::tuple(required("csource", &Self::csource, "who offers the upgrade",
                                       MissingParameters, MissingParameters),
            optional("payUrl", &Self::payUrl, "the page to pay on"), optional("src", &Self::src, "for what"),
            optional("confirmId", &Self::confirmId, "names this upgrade"),
            optional("appName", &Self::appName, "the application that it is for"),
            optional("parentWidget", &Self::parentWidget, "the X11 window that owns the dialog")));
    }
};

const MemberList& KJsApiAccount::members()
{
    using Self = KJsApiAccount;
    static const MemberList list =
        MemberList { "The signed-in user, login and logout, and their changes. With nobody signed in, "
                     "strings and lists are empty and booleans `false`.",
            {
                getter<&Self::privilege>(u"Privilege", Category::Account, Type::Object,
                    "What the user's memberships allow, and its changes.", { &EmptyHandle }),
                member<&Self::login>(u"login", Category::Account, Type::JsValue, { Type::JsValue },
                    "Has the user sign in. Returns whether the service takes the request on, which is not the "
                    "case while another login is under way; events say what becomes of it."),
                member<&Self::logout>(u"logout", Category::Account, Type::JsValue,
                    { { Type::String, "source", "who signs the user out" } },
                    "Signs the current user out. Returns whether the service takes the request on.",
                    { &MissingParameters }),
                member<&Self::upgradeMember>(u"upgradeMember", Category::Account, Type::JsValue,
                    { Type::JsValue },
                    "Opens the membership upgrade. Returns whether the service takes the request on."),
                listeners<Self, LoginEvent, AccountHandle>(
                    u"addLoginListener", u"removeLoginListener", Category::Account),
                listeners<Self, LogoutEvent, AccountHandle>(
                    u"addLogoutListener", u"removeLogoutListener", Category::Account),
                listeners<Self, UserInfoEvent, AccountHandle>(
                    u"addUserInfoChangedListener", u"removeUserInfoChangedListener", Category::Account),
                member<&Self::isLoggedIn>(
                    u"isLoggedIn", Category::Account, Type::JsValue, "Returns whether a user is signed in."),
                member<&Self::getUserId>(
                    u"getUserId", Category::Account, Type::JsValue, "Returns the current user's id."),
                member<&Self::getUserInfo>(u"getUserInfo", Category::Account, Type::JsValue,
                    "Returns what is known of the current user."),
                member<&Self::getMemberInfo>(u"getMemberInfo", Category::Account, Type::JsValue,
                    "Returns the current user's memberships."),
                member<&Self::getCompanyInfo>(u"getCompanyInfo", Category::Account, Type::JsValue,
                    "Returns what is known of the current user's company."),
                member<&Self::getAccountListInfo>(u"getAccountListInfo", Category::Account, Type::JsValue,
                    "Returns the users who are signed in on this machine."),
                member<&Self::isNovaMember>(u"isNovaMember", Category::Account, Type::JsValue,
                    "Returns whether the current user is a Nova member."),
                member<&Self::isFolioMember>(u"isFolioMember", Category::Account, Type::JsValue,
                    "Returns whether the current user is a Folio member."),
                member<&Self::isSuperMember>(u"isSuperMember", Category::Account, Type::JsValue,
                    "Returns whether the current user is a super member."),
                member<&Self::isCompanyMember>(u"isCompanyMember", Category::Account, Type::JsValue,
                    "Returns whether the current user belongs to a company."),
                member<&Self::isMultiAccount>(u"isMultiAccount", Category::Account, Type::JsValue,
                    "Returns whether more than one user is signed in on this machine."),
            } }
            .withEvents(LoginEvent, LogoutEvent, UserInfoEvent, MemberInfoEvent, ConfirmEvent)
            .handingOut<KJsApiPrivilege>();
    return list;
}

const MemberList& KJsApiPrivilege::members()
{
    using Self = KJsApiPrivilege;
    static const MemberList list = MemberList {
        "What the user's memberships allow, and its changes. Nobody has a privilege while no user is "
        "signed in.",
        {
            member<&Self::getPrivileges>(u"getPrivileges", Category::Account, Type::JsValue,
                "Returns all privileges that the service knows, and which of them the current user has."),
            member<&Self::hasPrivilege>(u"hasPrivilege", Category::Account, Type::JsValue,
                { { Type::String, "name", "a privilege; one that the service does not know nobody has" } },
                "Returns whether the current user has a privilege."),
        }
    }.withEvents(PrivilegeEvent);
    return list;
}

Answer<PrivilegedAccount> KJsApiPrivilege::findAccount(const JSContextEnv&)
{
    kacctoutsdk::KAccountSdkProxy* service =
        QCoreApplication::instance() ? KCoreApplication::getAccountSDK() : nullptr;
    if (!service)
        return NoAccountService;
    const IKAccount* current = service->getAccount({});
    if (!current)
        return NoCurrentAccount;
    return PrivilegedAccount { current };
}

Answer<std::vector<Privilege>> KJsApiPrivilege::getPrivileges(const PrivilegedAccount& account)
{
    std::vector<Privilege> list;
    for (const kacctoutsdk::KPrivilege& known : account.current->privileges())
        list.push_back({ known.name, known.isGranted, known.expireTime });
    return list;
}

Answer<bool> KJsApiPrivilege::hasPrivilege(const PrivilegedAccount& account, const Demanded<QString>& name)
{
    const QVector<kacctoutsdk::KPrivilege> known = account.current->privileges();
    return std::any_of(known.begin(), known.end(), [&](const kacctoutsdk::KPrivilege& privilege) {
        return privilege.isGranted && privilege.name == name.value;
    });
}

KJsApiAccountHandle* KJsApiAccount::handle()
{
    if (!QCoreApplication::instance())
        return nullptr;
    if (!m_handle)
        m_handle = std::make_unique<KJsApiAccountHandle>(*this);
    m_handle->follow();
    return m_handle.get();
}

Answer<AccountHandle> KJsApiAccount::findHandle(const JSContextEnv&)
{
    if (KJsApiAccountHandle* own = handle())
        return AccountHandle { own };
    return EmptyHandle;
}

Answer<AccountService> KJsApiAccount::findService(const JSContextEnv& page)
{
    Answer<AccountHandle> found = findHandle(page);
    if (found.isRefused())
        return found.refusal();
    if (!found.value().handle->service())
        return NoAccountService;
    return AccountService { found.value() };
}

Answer<CurrentAccount> KJsApiAccount::findCurrent(const JSContextEnv& page)
{
    Answer<AccountService> found = findService(page);
    if (found.isRefused())
        return found.refusal();
    const kacctoutsdk::IKAccount* current = found.value()->getAccount({});
    if (!current)
        return NoCurrentAccount;
    return CurrentAccount { found.value(), current };
}

Answer<Handle<KJsApiPrivilege>> KJsApiAccount::privilege(const JSContextEnv& page)
{
    auto answer = handOutKept<KJsApiPrivilege>(page, m_privilege);
    if (KJsApiAccountHandle* own = handle())
        own->setPrivilege(dynamic_cast<KJsApiPrivilege*>(m_privilege.get()));
    return answer;
}

namespace {

/// What the page gave, without empty strings.
template <typename Options> QVariantMap collectGiven(const Options& options)
{
    QVariantMap given = toMap(options);
    for (auto value = given.begin(); value != given.end();) {
        const bool isEmpty = value->userType() == QMetaType::QString && value->toString().isEmpty();
        value = isEmpty ? given.erase(value) : std::next(value);
    }
    return given;
}

} // namespace

Answer<bool> KJsApiAccount::login(
    const AccountService& service, const JSContextEnv& page, const LoginOptions& options)
{
    return service.handle->login(collectGiven(options), page);
}

Answer<bool> KJsApiAccount::logout(const AccountService& service, const QString& source)
{
    if (source.isEmpty())
        return MissingParameters;
    return service->logout({ { heapString("src"), source }, { heapString("logoutSrc"), source } });
}

Answer<bool> KJsApiAccount::upgradeMember(const AccountService& service, const UpgradeOptions& options)
{
    return service->upgradeMember(collectGiven(options));
}

Answer<bool> KJsApiAccount::isLoggedIn(const CurrentAccount& current)
{
    return current.account().isLoggedIn();
}

Answer<QString> KJsApiAccount::getUserId(const CurrentAccount& current)
{
    return current.account().userInfo().userId;
}

Answer<KUserInfo> KJsApiAccount::getUserInfo(const CurrentAccount& current)
{
    return current.account().userInfo();
}

Answer<MemberInfo> KJsApiAccount::getMemberInfo(const CurrentAccount& current)
{
    return KJsApiAccountHandle::readMemberInfo(current.account());
}

Answer<KCompanyInfo> KJsApiAccount::getCompanyInfo(const CurrentAccount& current)
{
    return current.account().companyInfo();
}

Answer<std::vector<KnownAccount>> KJsApiAccount::getAccountListInfo(const CurrentAccount& current)
{
    const QString currentId = current.account().userInfo().userId;
    std::vector<KnownAccount> list;
    for (const QString& userId : current->accountList()) {
        const IKAccount* account = current->getAccount(userId);
        if (!account)
            continue;
        const KUserInfo user = account->userInfo();
        list.push_back({ user.userId, user.account, user.nickName, user.pic, user.companyId,
            account->companyInfo().name, user.userId == currentId });
    }
    return list;
}

Answer<bool> KJsApiAccount::isNovaMember(const CurrentAccount& current)
{
    return current.account().isMember(KMemberKind::Nova);
}

Answer<bool> KJsApiAccount::isFolioMember(const CurrentAccount& current)
{
    return current.account().isMember(KMemberKind::Folio);
}

Answer<bool> KJsApiAccount::isSuperMember(const CurrentAccount& current)
{
    return current.account().isMember(KMemberKind::Super);
}

Answer<bool> KJsApiAccount::isCompanyMember(const CurrentAccount& current)
{
    return current.account().isMember(KMemberKind::Company);
}

Answer<bool> KJsApiAccount::isMultiAccount(const CurrentAccount& current)
{
    return current->accountList().size() > 1;
}

} // namespace jsapi
