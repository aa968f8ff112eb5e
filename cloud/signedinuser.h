// What every member that asks the cloud-document service needs first: the service, and a user.
#pragma once

#include "framework/call.h"
#include "suite/kaccountsdk.h"
#include "suite/kcoreapplication.h"

inline constexpr char WrongCloudService[] = "Cloud service error.";

/// Has `action` answer with the id of the signed-in user. Failures, all 3 and looked for in this order:
/// "Cloud service error.", "Get account SDK error.", "User not login".
template <typename Action> Reply withSignedInUser(Call& call, Action action)
{
    if (!KCoreApplication::cloudIpcService())
        return call.fail(ErrorCode::OperationFailed, WrongCloudService);
    kacctoutsdk::KAccountSdkProxy* accounts = KCoreApplication::getAccountSDK();
    const kacctoutsdk::IKAccount* account = accounts ? accounts->getAccount(QString()) : nullptr;
    if (!account)
        return call.fail(ErrorCode::OperationFailed, "Get account SDK error.");
    if (!account->isLoggedIn())
        return call.fail(ErrorCode::OperationFailed, "User not login");
    return action(account->userInfo().userId);
}
