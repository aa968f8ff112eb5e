#include "suite/kipclogininfo.h"

KIpcLoginInfo KIpcLoginInfo::makeRomaingMode(const QString& userId, const QString& mode)
{
    return { QStringLiteral("changeRoamingMode"),
        { { QStringLiteral("userId"), userId }, { QStringLiteral("roamingMode"), mode } } };
}
