// The services of a suite that a test has in hand. suite.cpp makes them the suite's; null is a suite without
// one.
#pragma once

#include "suite/kaccountsdk.h"
#include "suite/kcloudipc.h"
#include "suite/kcloudsvrproxy.h"
#include "suite/kcoreapplication.h"

namespace support {

inline IKCloudIpcService* cloudIpc = nullptr;
inline KCloudSvrProxy* cloudProxy = nullptr;
inline kacctoutsdk::KAccountSdkProxy* accounts = nullptr;

/// The suite's application, which is on no display.
KCoreApplication& application();

} // namespace support
