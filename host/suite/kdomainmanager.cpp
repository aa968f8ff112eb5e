#include "suite/kdomainmanager.h"

#include "host/profile/profile.h"
#include "suite/kcoreapplication.h"

QString KDomainManager::domainUrl(const QString& name)
{
    return profile::current()->domains.value(name);
}

int KDomainManager::intranetType()
{
    return profile::current()->intranetType;
}

KDomainManager* KCoreApplication::domainManager()
{
    static KDomainManager manager;
    return profile::serviceOn(QStringLiteral("domainManager")) ? &manager : nullptr;
}
