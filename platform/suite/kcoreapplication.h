// The suite's application object: the way to its services.
#pragma once

#include <QApplication>

class IKCloudIpcService;
class KCloudSvrProxy;
class KDomainManager;
namespace kacctoutsdk {
class KAccountSdkProxy;
}

/// The class of QCoreApplication::instance() in a suite that has a cloud service. The library knows it by its name in
/// Qt's meta-object system, which a derived class has too; its layout is the suite's own, since only the functions
/// below are called, none of them virtual.
///
/// Each service belongs to the suite, which may end it, make it later, or replace it by another one: ask
/// every time. Null when the suite has none. [GUI thread] for all.
///
/// Of those with signals: when one ends, the next is looked for once a second. When one is replaced without
/// being ended, nothing of the new one is noticed until a page next uses a member.
class KCoreApplication : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

    /// The cloud IPC service (kcloudipc.h) of the running application. Without an application, or with one of another
    /// class, there is none.
    IKCloudIpcService* cloudIpcService();
    /// The proxy of the cloud-document service (kcloudsvrproxy.h). Also called without an application.
    static KCloudSvrProxy* cloudSvrProxy();
    /// The account service (kaccountsdk.h). Also called without an application.
    static kacctoutsdk::KAccountSdkProxy* getAccountSDK();
    /// The domain manager (kdomainmanager.h). Also called without an application.
    static KDomainManager* domainManager();
};
