// The application object. It has no cloud IPC service: there is no process that would answer.
#include "suite/kcoreapplication.h"

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return nullptr;
}
