// The suite's application object: the way to its services.
#pragma once

class IKCloudIpcService;
class KCloudSvrProxy;
namespace kacctoutsdk {
class KAccountSdkProxy;
}

/// Each service belongs to the suite, which may end it, make it later, or replace it by another one: ask
/// every time. Null when the suite has none, or there is no application object. [GUI thread] for all.
///
/// Of those with signals: when one ends, the next is looked for once a second. When one is replaced without
/// being ended, nothing of the new one is noticed until a page next uses a member.
class KCoreApplication {
public:
    /// The cloud IPC service (kcloudipc.h).
    static IKCloudIpcService* cloudIpcService();
    /// The proxy of the cloud-document service (kcloudsvrproxy.h).
    static KCloudSvrProxy* cloudSvrProxy();
    /// The account service (kaccountsdk.h).
    static kacctoutsdk::KAccountSdkProxy* getAccountSDK();
};
