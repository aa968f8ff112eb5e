// The account of whoever is signed in, for members that need one.
#pragma once

#include "framework/failure.h"
#include "suite/kaccountsdk.h"
#include "suite/kcoreapplication.h"

namespace jsapi {

inline constexpr Failure NoAccountSdk { ErrorCode::OperationFailed, "Get account SDK error." };
inline constexpr Failure NotLoggedIn { ErrorCode::OperationFailed, "User not login" };

/// The suite's account, which says whether anybody is signed in; null when there is none. Borrowed until the caller lets
/// others run. [GUI thread]
inline const kacctoutsdk::IKAccount* findAccount()
{
    kacctoutsdk::KAccountSdkProxy* accounts = KCoreApplication::getAccountSDK();
    return accounts ? accounts->getAccount(QString()) : nullptr;
}

} // namespace jsapi
