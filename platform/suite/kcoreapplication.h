// The suite's application object, and the services that it offers.
#pragma once

class IKCloudIpcService;

class KCoreApplication {
public:
    /// The cloud IPC service (kcloudipc.h), or null when it is not available, or there is no application
    /// object. Owned by the suite; to be asked for anew for each request. [GUI thread]
    static IKCloudIpcService* cloudIpcService();
};
