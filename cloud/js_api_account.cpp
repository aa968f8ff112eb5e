#include "cloud/js_api_account.h"

#include <QCoreApplication>

using kacctoutsdk::IKAccount;
using kacctoutsdk::KAccountSdkProxy;
using kacctoutsdk::KMemberKind;
using Handle = KJsApiAccountHandle;

const MemberList& KJsApiAccount::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                                                                 category           answer         parameters
        property<&KJsApiAccount::privilege>(u"Privilege",                                         Category::Account, Type::Object),
        method<&KJsApiAccount::login>(u"login",                                                   Category::Account, Type::JsValue, { Type::JsValue }),
        method<&KJsApiAccount::logout>(u"logout",                                                 Category::Account, Type::JsValue, { Type::String }),
        method<&KJsApiAccount::upgradeMember>(u"upgradeMember",                                   Category::Account, Type::JsValue, { Type::JsValue }),
        method<&KJsApiAccount::addLoginListener>(u"addLoginListener",                             Category::Account, Type::JsValue, { Type::Object }),
        method<&KJsApiAccount::removeLoginListener>(u"removeLoginListener",                       Category::Account, Type::JsValue, { Type::Object }),
        method<&KJsApiAccount::addLogoutListener>(u"addLogoutListener",                           Category::Account, Type::JsValue, { Type::Object }),
        method<&KJsApiAccount::removeLogoutListener>(u"removeLogoutListener",                     Category::Account, Type::JsValue, { Type::Object }),
        method<&KJsApiAccount::addUserInfoChangedListener>(u"addUserInfoChangedListener",         Category::Account, Type::JsValue, { Type::Object }),
        method<&KJsApiAccount::removeUserInfoChangedListener>(u"removeUserInfoChangedListener",   Category::Account, Type::JsValue, { Type::Object }),
        method<&KJsApiAccount::isLoggedIn>(u"isLoggedIn",                                         Category::Account, Type::JsValue),
        method<&KJsApiAccount::getUserId>(u"getUserId",                                           Category::Account, Type::JsValue),
        method<&KJsApiAccount::getUserInfo>(u"getUserInfo",                                       Category::Account, Type::JsValue),
        method<&KJsApiAccount::getMemberInfo>(u"getMemberInfo",                                   Category::Account, Type::JsValue),
        method<&KJsApiAccount::getCompanyInfo>(u"getCompanyInfo",                                 Category::Account, Type::JsValue),
        method<&KJsApiAccount::getAccountListInfo>(u"getAccountListInfo",                         Category::Account, Type::JsValue),
        method<&KJsApiAccount::isNovaMember>(u"isNovaMember",                                     Category::Account, Type::JsValue),
        method<&KJsApiAccount::isFolioMember>(u"isFolioMember",                                   Category::Account, Type::JsValue),
        method<&KJsApiAccount::isSuperMember>(u"isSuperMember",                                   Category::Account, Type::JsValue),
        method<&KJsApiAccount::isCompanyMember>(u"isCompanyMember",                               Category::Account, Type::JsValue),
        method<&KJsApiAccount::isMultiAccount>(u"isMultiAccount",                                 Category::Account, Type::JsValue),
    }.withEvents<KJsApiAccount>().handingOut<KJsApiPrivilege>();
    // clang-format on
    return list;
}

const MemberList& KJsApiPrivilege::members()
{
    static const MemberList list = MemberList {}.withEvents<KJsApiPrivilege>();
    return list;
}

namespace {

/// Copies the texts, or booleans, that the page gave; what does not convert is left out.
void copyTexts(const Options& options, std::initializer_list<const char*> names, QVariantMap& params)
{
    for (const char* name : names) {
        const QString value = options.string(name);
        if (!value.isEmpty())
            params.insert(ownText(name), value);
    }
}

void copyBooleans(const Options& options, std::initializer_list<const char*> names, QVariantMap& params)
{
    for (const char* name : names) {
        if (const std::optional<bool> value = options.boolean(name))
            params.insert(ownText(name), *value);
    }
}

} // namespace

KJsApiAccountHandle* KJsApiAccount::handle()
{
    if (!QCoreApplication::instance())
        return nullptr;
    if (!m_handle)
        m_handle = std::make_unique<KJsApiAccountHandle>(*this);
    m_handle->follow();
    return m_handle.get();
}

template <typename Action> Reply KJsApiAccount::withService(Call& call, Action action)
{
    KJsApiAccountHandle* own = handle();
    if (!own)
        return call.fail(ErrorCode::OperationFailed, "empty handle.");
    KAccountSdkProxy* service = own->service();
    if (!service)
        return call.fail(ErrorCode::OperationFailed, "Accountsdk is not initialized.");
    return action(*service);
}

template <typename Query> Reply KJsApiAccount::withAccount(Call& call, Query query)
{
    return withService(call, [&](KAccountSdkProxy& service) {
        const IKAccount* account = service.getAccount({});
        if (!account)
            return call.fail(ErrorCode::OperationFailed, "Current account is not initialized.");
        return query(service, *account);
    });
}

Reply KJsApiAccount::privilege(Call& call)
{
    const Reply reply = call.handOutKept(m_privilege, KJsApiPrivilege::ScriptName);
    if (KJsApiAccountHandle* own = handle())
        own->setPrivilege(m_privilege.get());
    return reply;
}

Reply KJsApiAccount::login(Call& call)
{
    return withService(call, [&](KAccountSdkProxy&) {
        const Options options = call.options();
        QVariantMap params;
        copyTexts(options, { "src", "bizSrc", "confirmId", "loginSrc", "from" }, params);
        copyBooleans(options, { "qrcode", "bShowModal", "bTopWindow" }, params);
        if (!params.contains(ownText("src")))
            return call.fail(ErrorCode::BadArgument, MissingParameters);
        return call.succeed(m_handle->login(params, call.context()));
    });
}

Reply KJsApiAccount::logout(Call& call)
{
    return withService(call, [&](KAccountSdkProxy& service) {
        const QString source = call.string(0);
        if (source.isEmpty())
            return call.fail(ErrorCode::BadArgument, MissingParameters);
        return call.succeed(service.logout({ { ownText("src"), source }, { ownText("logoutSrc"), source } }));
    });
}

Reply KJsApiAccount::upgradeMember(Call& call)
{
    return withService(call, [&](KAccountSdkProxy& service) {
        const Options options = call.options();
        QVariantMap params;
        copyTexts(options, { "csource", "payUrl", "src", "confirmId", "appName" }, params);
        if (const std::optional<std::int32_t> window = options.integer("parentWidget"))
            params.insert(ownText("parentWidget"), *window);
        if (!params.contains(ownText("csource")))
            return call.fail(ErrorCode::BadArgument, MissingParameters);
        return call.succeed(service.upgradeMember(params));
    });
}

Reply KJsApiAccount::changeListeners(Call& call, HubChange change, const char* event)
{
    if (!handle())
        return call.fail(ErrorCode::OperationFailed, "empty handle.");
    IJSEventHub* events = hub();
    if (!events)
        return call.fail(ErrorCode::OperationFailed, "Event service error.");
    const KResult status = (events->*change)(ownText(event), call.context(), call.copiedArgument(0));
    return status == KR_OK ? call.succeed() : call.status(status);
}

Reply KJsApiAccount::addLoginListener(Call& call)
{
    return changeListeners(call, &IJSEventHub::Add, Handle::LoginEvent);
}

Reply KJsApiAccount::removeLoginListener(Call& call)
{
    return changeListeners(call, &IJSEventHub::Remove, Handle::LoginEvent);
}

Reply KJsApiAccount::addLogoutListener(Call& call)
{
    return changeListeners(call, &IJSEventHub::Add, Handle::LogoutEvent);
}

Reply KJsApiAccount::removeLogoutListener(Call& call)
{
    return changeListeners(call, &IJSEventHub::Remove, Handle::LogoutEvent);
}

Reply KJsApiAccount::addUserInfoChangedListener(Call& call)
{
    return changeListeners(call, &IJSEventHub::Add, Handle::UserInfoEvent);
}

Reply KJsApiAccount::removeUserInfoChangedListener(Call& call)
{
    return changeListeners(call, &IJSEventHub::Remove, Handle::UserInfoEvent);
}

Reply KJsApiAccount::isLoggedIn(Call& call)
{
    return withAccount(call,
        [&](KAccountSdkProxy&, const IKAccount& account) { return call.succeed(account.isLoggedIn()); });
}

Reply KJsApiAccount::getUserId(Call& call)
{
    return withAccount(call,
        [&](KAccountSdkProxy&, const IKAccount& account) { return call.succeed(account.userInfo().userId); });
}

Reply KJsApiAccount::getUserInfo(Call& call)
{
    return withAccount(call, [&](KAccountSdkProxy&, const IKAccount& account) {
        const kacctoutsdk::KUserInfo user = account.userInfo();
        return call.succeed(QVariant(QVariantMap {
            { ownText("userId"), user.userId },
            { ownText("account"), user.account },
            { ownText("nickName"), user.nickName },
            { ownText("pic"), user.pic },
            { ownText("thumbnailLocalPath"), user.thumbnailLocalPath },
            { ownText("email"), user.email },
            { ownText("phoneNumber"), user.phoneNumber },
            { ownText("status"), user.status },
            { ownText("sex"), user.sex },
            { ownText("loginMode"), user.loginMode },
            { ownText("country"), user.country },
            { ownText("province"), user.province },
            { ownText("city"), user.city },
            { ownText("address"), user.address },
            { ownText("postal"), user.postal },
            { ownText("companyId"), user.companyId },
            { ownText("regtime"), user.regtime },
            { ownText("deviceStatus"), user.deviceStatus },
            { ownText("isPlus"), user.isPlus },
            { ownText("roleList"), user.roleList },
        }));
    });
}

Reply KJsApiAccount::getMemberInfo(Call& call)
{
    return withAccount(call, [&](KAccountSdkProxy&, const IKAccount& account) {
        return call.succeed(QVariant(Handle::memberInfo(account)));
    });
}

Reply KJsApiAccount::getCompanyInfo(Call& call)
{
    return withAccount(call, [&](KAccountSdkProxy&, const IKAccount& account) {
        const kacctoutsdk::KCompanyInfo company = account.companyInfo();
        return call.succeed(QVariant(QVariantMap {
            { ownText("companyId"), company.companyId },
            { ownText("name"), company.name },
            { ownText("email"), company.email },
            { ownText("phoneNumber"), company.phoneNumber },
            { ownText("description"), company.description },
            { ownText("address"), company.address },
            { ownText("city"), company.city },
            { ownText("country"), company.country },
            { ownText("province"), company.province },
            { ownText("postal"), company.postal },
            { ownText("fax"), company.fax },
            { ownText("adminId"), company.adminId },
        }));
    });
}

Reply KJsApiAccount::getAccountListInfo(Call& call)
{
    return withAccount(call, [&](KAccountSdkProxy& service, const IKAccount& current) {
        const QString currentId = current.userInfo().userId;
        QVariantList list;
        for (const QString& userId : service.accountList()) {
            const IKAccount* account = service.getAccount(userId);
            if (!account)
                continue;
            const kacctoutsdk::KUserInfo user = account->userInfo();
            list.append(QVariantMap {
                { ownText("userId"), user.userId },
                { ownText("account"), user.account },
                { ownText("nickName"), user.nickName },
                { ownText("pic"), user.pic },
                { ownText("companyId"), user.companyId },
                { ownText("companyName"), account->companyInfo().name },
                { ownText("isCurrent"), user.userId == currentId },
            });
        }
        return call.succeed(QVariant(list));
    });
}

Reply KJsApiAccount::isMember(Call& call, KMemberKind kind)
{
    return withAccount(call,
        [&](KAccountSdkProxy&, const IKAccount& account) { return call.succeed(account.isMember(kind)); });
}

Reply KJsApiAccount::isNovaMember(Call& call)
{
    return isMember(call, KMemberKind::Nova);
}

Reply KJsApiAccount::isFolioMember(Call& call)
{
    return isMember(call, KMemberKind::Folio);
}

Reply KJsApiAccount::isSuperMember(Call& call)
{
    return isMember(call, KMemberKind::Super);
}

Reply KJsApiAccount::isCompanyMember(Call& call)
{
    return isMember(call, KMemberKind::Company);
}

Reply KJsApiAccount::isMultiAccount(Call& call)
{
    return withAccount(call, [&](KAccountSdkProxy& service, const IKAccount&) {
        return call.succeed(service.accountList().size() > 1);
    });
}
