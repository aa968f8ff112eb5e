#include "tests/support/suite.h"

KCoreApplication& support::application()
{
    static int count = 1;
    static char name[] = "suite";
    static char* arguments[] = { name, nullptr };
    static auto* application =
        (qputenv("QT_QPA_PLATFORM", "offscreen"), new KCoreApplication(count, arguments));
    return *application;
}

// A program's own definitions come before the suite's.
IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return this == QCoreApplication::instance() ? support::cloudIpc : nullptr;
}

KCloudSvrProxy* KCoreApplication::cloudSvrProxy()
{
    return support::cloudProxy;
}

kacctoutsdk::KAccountSdkProxy* KCoreApplication::getAccountSDK()
{
    return support::accounts;
}
