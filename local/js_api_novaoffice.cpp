#include "local/js_api_novaoffice.h"

#include "kbase/system.h"
#include "krt/dirs.h"
#include "krt/krt.h"
#include "suite/kdcinfo.h"

#include <QHostInfo>

const MemberList& KJsApiNovaoffice::members()
{
    // clang-format off
    static const MemberList list {
        // member                                                                        category         answer
        method<&KJsApiNovaoffice::getNovaVersion>(u"getNovaVersion",                     Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getApplicationName>(u"getApplicationName",             Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getGuid>(u"getGuid",                                   Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getUuid>(u"getUuid",                                   Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getHdid>(u"getHdid",                                   Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getChannel>(u"getChannel",                             Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getComputerName>(u"getComputerName",                   Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getSystemUserName>(u"getSystemUserName",               Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getNovaofficeInstallPath>(u"getNovaofficeInstallPath", Category::Usual, Type::JsValue),
        method<&KJsApiNovaoffice::getCurrentNovaDpi>(u"getCurrentNovaDpi",               Category::Usual, Type::JsValue),
    };
    // clang-format on
    return list;
}

namespace {

QString systemUserName()
{
    const std::uint32_t length = _XGetOSUserName(nullptr, 0);
    std::u16string name(length + 1, u'\0');
    name.resize(qMin(_XGetOSUserName(name.data(), length + 1), length));
    return QString::fromStdU16String(name);
}

} // namespace

Reply KJsApiNovaoffice::getNovaVersion(Call& call)
{
    return call.succeed(KDcInfoCDetail::getVersion());
}

Reply KJsApiNovaoffice::getApplicationName(Call& call)
{
    return call.succeed(krt::appName());
}

Reply KJsApiNovaoffice::getGuid(Call& call)
{
    return call.succeed(KDcInfoCDetail::getGuid());
}

Reply KJsApiNovaoffice::getUuid(Call& call)
{
    return call.succeed(KDcInfoCDetail::getUuid());
}

Reply KJsApiNovaoffice::getHdid(Call& call)
{
    return call.succeed(KDcInfoCDetail::getHdid3());
}

Reply KJsApiNovaoffice::getChannel(Call& call)
{
    return call.succeed(KDcInfoCDetail::getMC());
}

Reply KJsApiNovaoffice::getComputerName(Call& call)
{
    return call.succeed(QHostInfo::localHostName());
}

Reply KJsApiNovaoffice::getSystemUserName(Call& call)
{
    static const QString name = systemUserName();
    return call.succeed(name);
}

Reply KJsApiNovaoffice::getNovaofficeInstallPath(Call& call)
{
    return call.succeed(krt::dirs::officeInstallRoot());
}

Reply KJsApiNovaoffice::getCurrentNovaDpi(Call& call)
{
    return call.succeed(krt::dpiScaled());
}
