// All but windows (windows.cpp), the theme (theme.cpp) and a few services (services.cpp) that the application itself must offer, in its smallest form: no
// account, no cloud, no plugins, no dialogs, log records on the standard error stream. The headers say what each of these promises. They are found in the executable because it is
// linked with the library; an application that loads the library with dlopen exports them (ENABLE_EXPORTS).
#include <suite/kaccessmanager.h>
#include <suite/kaccountsdk.h>
#include <suite/kcloudfiledialog.h>
#include <suite/kcloudipc.h>
#include <suite/kcloudsdk.h>
#include <suite/kcloudsvrproxy.h>
#include <suite/kcoreapplication.h>
#include <suite/kdcinfo.h>
#include <suite/kdownloadfiledialog.h>
#include <suite/kfilepanel.h>
#include <suite/kipclogininfo.h>
#include <suite/kplugin.h>
#include <suite/kpluginconfig.h>
#include <suite/ksyncfolderui.h>
#include <suite/kxloggerlite.h>

#include <cstdio>

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return nullptr;
}

KCloudSvrProxy* KCoreApplication::cloudSvrProxy()
{
    return nullptr;
}

kacctoutsdk::KAccountSdkProxy* KCoreApplication::getAccountSDK()
{
    return nullptr;
}

KCloudSdk* KCloudSdk::getInstance()
{
    return nullptr;
}

QString KCloudSdk::invoke(const QString&, const QByteArray&, QObject*, const QString&)
{
    return {};
}

KSyncFolderUi* KSyncFolderUi::getInstance()
{
    return nullptr;
}

bool KSyncFolderUi::show(KSyncFolderDialog, const JSContextEnv&, const QVariantMap&, QObject*, const QString&)
{
    return false;
}

KIpcLoginInfo KIpcLoginInfo::makeRomaingMode(const QString& userId, const QString& mode)
{
    return { QStringLiteral("changeRoamingMode"),
        { { QStringLiteral("userId"), userId }, { QStringLiteral("roamingMode"), mode } } };
}

KDcInfoC* KDcInfoC::instance()
{
    return nullptr;
}

QString KDcInfoCDetail::getVersion()
{
    return {};
}

QString KDcInfoCDetail::getGuid()
{
    return {};
}

QString KDcInfoCDetail::getUuid()
{
    return {};
}

QString KDcInfoCDetail::getHdid3()
{
    return {};
}

QString KDcInfoCDetail::getMC()
{
    return {};
}

void KxLoggerLite::writeInfo(const std::wstring& module, const std::wstring& text)
{
    std::fprintf(stderr, "%ls: %ls\n", module.c_str(), text.c_str());
}

void KxLoggerLite::writeWarning(const std::wstring& module, const std::wstring& text)
{
    std::fprintf(stderr, "%ls: warning: %ls\n", module.c_str(), text.c_str());
}

void KxLoggerLite::writeError(const std::wstring& module, const std::wstring& text)
{
    std::fprintf(stderr, "%ls: error: %ls\n", module.c_str(), text.c_str());
}

bool kpluginconfig::inPluginDownloadDir(const QString&)
{
    return false;
}

KPluginManager* KPluginManager::getInstance()
{
    return nullptr;
}

// Without a manager none of these is called.

KPlugin* KPluginManager::getPlugin(const QString&)
{
    return nullptr;
}

QObject* KPluginManager::getPluginInstanceObject(const QString&)
{
    return nullptr;
}

int KPlugin::load(unsigned, unsigned)
{
    return LoadNoPlugin;
}

QVariant KPlugin::getProp(const QString&)
{
    return {};
}

QString KPlugin::resourceFilePath(const QString&)
{
    return {};
}

QString KPlugin::frameworkFilePath(const QString&)
{
    return {};
}

QString KPlugin::localPath() const
{
    return {};
}

int KPlugin::state() const
{
    return StateKnown;
}

IKAccessManager* GetAccessManager()
{
    return nullptr;
}

IKFilePanel* GetFilePanel()
{
    return nullptr;
}

IKCloudFileDialog* CreateCloudFileDialog(bool)
{
    return nullptr;
}

QString KDownloadFileDialog::getWritableFileName(QWidget*, const QString&, const QString&, const QString&)
{
    return {};
}
