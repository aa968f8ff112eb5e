// The fields of users, companies and memberships, by their keys: in a profile, in the steps of a play and in
// what the account service stores. The profile's schema has the same keys, with descriptions.
#pragma once

#include "suite/kaccountsdk.h"

#include <variant>

namespace profile {

template <typename Record> struct Field {
    const char* key;
    std::variant<QString Record::*, qint64 Record::*, bool Record::*, QStringList Record::*> member;
};

inline constexpr Field<kacctoutsdk::KUserInfo> UserFields[] = {
    { "userId", &kacctoutsdk::KUserInfo::userId },
    { "account", &kacctoutsdk::KUserInfo::account },
    { "nickName", &kacctoutsdk::KUserInfo::nickName },
    { "pic", &kacctoutsdk::KUserInfo::pic },
    { "thumbnailLocalPath", &kacctoutsdk::KUserInfo::thumbnailLocalPath },
    { "email", &kacctoutsdk::KUserInfo::email },
    { "phoneNumber", &kacctoutsdk::KUserInfo::phoneNumber },
    { "status", &kacctoutsdk::KUserInfo::status },
    { "sex", &kacctoutsdk::KUserInfo::sex },
    { "loginMode", &kacctoutsdk::KUserInfo::loginMode },
    { "country", &kacctoutsdk::KUserInfo::country },
    { "province", &kacctoutsdk::KUserInfo::province },
    { "city", &kacctoutsdk::KUserInfo::city },
    { "address", &kacctoutsdk::KUserInfo::address },
    { "postal", &kacctoutsdk::KUserInfo::postal },
    { "companyId", &kacctoutsdk::KUserInfo::companyId },
    { "regtime", &kacctoutsdk::KUserInfo::regtime },
    { "deviceStatus", &kacctoutsdk::KUserInfo::deviceStatus },
    { "isPlus", &kacctoutsdk::KUserInfo::isPlus },
    { "roleList", &kacctoutsdk::KUserInfo::roleList },
};

inline constexpr Field<kacctoutsdk::KCompanyInfo> CompanyFields[] = {
    { "companyId", &kacctoutsdk::KCompanyInfo::companyId },
    { "name", &kacctoutsdk::KCompanyInfo::name },
    { "email", &kacctoutsdk::KCompanyInfo::email },
    { "phoneNumber", &kacctoutsdk::KCompanyInfo::phoneNumber },
    { "description", &kacctoutsdk::KCompanyInfo::description },
    { "address", &kacctoutsdk::KCompanyInfo::address },
    { "city", &kacctoutsdk::KCompanyInfo::city },
    { "country", &kacctoutsdk::KCompanyInfo::country },
    { "province", &kacctoutsdk::KCompanyInfo::province },
    { "postal", &kacctoutsdk::KCompanyInfo::postal },
    { "fax", &kacctoutsdk::KCompanyInfo::fax },
    { "adminId", &kacctoutsdk::KCompanyInfo::adminId },
};

/// As a profile has them: whether the user is a member follows from the time.
inline constexpr Field<kacctoutsdk::KMembership> MembershipFields[] = {
    { "tier", &kacctoutsdk::KMembership::tier },
    { "expireTime", &kacctoutsdk::KMembership::expireTime },
};

/// Calls `use(key, member)` for each field that is a string and may change while the user is signed in.
template <typename Use> void forEachChangeableUserField(Use use)
{
    using kacctoutsdk::KUserInfo;
    for (const Field<KUserInfo>& field : UserFields) {
        const auto* string = std::get_if<QString KUserInfo::*>(&field.member);
        if (string && *string != &KUserInfo::userId)
            use(QLatin1String(field.key), *string);
    }
}

} // namespace profile
