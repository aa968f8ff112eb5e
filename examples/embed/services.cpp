// Services that this application does not have, and what pages may do beyond their window, which is nothing here.
#include <suite/kcoreapplication.h>
#include <suite/kdomainmanager.h>
#include <suite/kpagepermission.h>
#include <suite/kpurchase.h>
#include <suite/kremoteconfig.h>
#include <suite/kviewpage.h>

bool kpagepermission::isGranted(const JSContextEnv&, KPagePermission, const QString&)
{
    return false;
}

bool kviewpage::choose(const QString&, const QUrl&)
{
    return false;
}

KDomainManager* KCoreApplication::domainManager()
{
    return nullptr;
}

KPurchase* KPurchase::getInstance()
{
    return nullptr;
}

KRemoteConfig* KRemoteConfig::instance()
{
    return nullptr;
}

// Without these services none of the following is called.

QString KDomainManager::domainUrl(const QString&)
{
    return {};
}

int KDomainManager::intranetType()
{
    return 0;
}

int KPurchase::open(const JSContextEnv&, const QString&, const QString&)
{
    return NobodySignedIn;
}

QString KRemoteConfig::version() const
{
    return {};
}

qint64 KRemoteConfig::updateTime() const
{
    return 0;
}

QStringList KRemoteConfig::keys() const
{
    return {};
}

QVariant KRemoteConfig::data(const QString&) const
{
    return {};
}

KConfigContext KRemoteConfig::translateContext(const KConfigContext& context) const
{
    return context;
}

QStringList KRemoteConfig::groups() const
{
    return {};
}

QVariant KRemoteConfig::groupMatchValue(const QString&, const KConfigContext&) const
{
    return {};
}

int KRemoteConfig::authSwitch(const QString&) const
{
    return -1;
}

bool KRemoteConfig::setAuthSwitch(const QString&, bool)
{
    return false;
}

QVariant KRemoteConfig::configData(const QString&, const QString&) const
{
    return {};
}

bool KRemoteConfig::setConfigData(const QString&, const QString&, const QVariant&)
{
    return false;
}
