#include "cloud/js_api_account.h"

const MemberList& KJsApiAccount::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                         category           answer         parameters
        property<&KJsApiAccount::privilege>(u"Privilege", Category::Account, Type::Object),
        unbuilt(u"login",                                 Category::Account, Type::JsValue, { Type::JsValue }),
        unbuilt(u"logout",                                Category::Account, Type::JsValue, { Type::String }),
        unbuilt(u"upgradeMember",                         Category::Account, Type::JsValue, { Type::JsValue }),
        unbuilt(u"addLoginListener",                      Category::Account, Type::JsValue, { Type::Object }),
        unbuilt(u"removeLoginListener",                   Category::Account, Type::JsValue, { Type::Object }),
        unbuilt(u"addLogoutListener",                     Category::Account, Type::JsValue, { Type::Object }),
        unbuilt(u"removeLogoutListener",                  Category::Account, Type::JsValue, { Type::Object }),
        unbuilt(u"addUserInfoChangedListener",            Category::Account, Type::JsValue, { Type::Object }),
        unbuilt(u"removeUserInfoChangedListener",         Category::Account, Type::JsValue, { Type::Object }),
        unbuilt(u"isLoggedIn",                            Category::Account, Type::JsValue),
        unbuilt(u"getUserId",                             Category::Account, Type::JsValue),
        unbuilt(u"getUserInfo",                           Category::Account, Type::JsValue),
        unbuilt(u"getMemberInfo",                         Category::Account, Type::JsValue),
        unbuilt(u"getCompanyInfo",                        Category::Account, Type::JsValue),
        unbuilt(u"getAccountListInfo",                    Category::Account, Type::JsValue),
        unbuilt(u"isNovaMember",                          Category::Account, Type::JsValue),
        unbuilt(u"isFolioMember",                         Category::Account, Type::JsValue),
        unbuilt(u"isSuperMember",                         Category::Account, Type::JsValue),
        unbuilt(u"isCompanyMember",                       Category::Account, Type::JsValue),
        unbuilt(u"isMultiAccount",                        Category::Account, Type::JsValue),
    }.withEvents<KJsApiAccount>().handingOut<KJsApiPrivilege>();
    // clang-format on
    return list;
}

const MemberList& KJsApiPrivilege::members()
{
    static const MemberList list = MemberList {}.withEvents<KJsApiPrivilege>();
    return list;
}

Reply KJsApiAccount::privilege(Call& call)
{
    return call.handOutKept(m_privilege, KJsApiPrivilege::ScriptName);
}
