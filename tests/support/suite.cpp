#include "tests/support/suite.h"

#include "suite/kcoreapplication.h"

// A program's own definitions come before the suite's.
IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return support::cloudIpc;
}

KCloudSvrProxy* KCoreApplication::cloudSvrProxy()
{
    return support::cloudProxy;
}

kacctoutsdk::KAccountSdkProxy* KCoreApplication::getAccountSDK()
{
    return support::accounts;
}
