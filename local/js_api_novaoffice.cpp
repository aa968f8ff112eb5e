#include "local/js_api_novaoffice.h"

#include "kbase/system.h"
#include "krt/dirs.h"
#include "krt/krt.h"
#include "suite/kdcinfo.h"

#include <QHostInfo>

const MemberList& KJsApiNovaoffice::members()
{
    using Self = KJsApiNovaoffice;
    static const MemberList list {
        //                                         name                         mask             result
        method<&Self::getNovaVersion>(u"getNovaVersion", Category::Usual, Type::JsValue),
        method<&Self::getApplicationName>(u"getApplicationName", Category::Usual, Type::JsValue),
        method<&Self::getGuid>(u"getGuid", Category::Usual, Type::JsValue),
        method<&Self::getUuid>(u"getUuid", Category::Usual, Type::JsValue),
        method<&Self::getHdid>(u"getHdid", Category::Usual, Type::JsValue),
        method<&Self::getChannel>(u"getChannel", Category::Usual, Type::JsValue),
        method<&Self::getComputerName>(u"getComputerName", Category::Usual, Type::JsValue),
        method<&Self::getSystemUserName>(u"getSystemUserName", Category::Usual, Type::JsValue),
        method<&Self::getNovaofficeInstallPath>(u"getNovaofficeInstallPath", Category::Usual, Type::JsValue),
        method<&Self::getCurrentNovaDpi>(u"getCurrentNovaDpi", Category::Usual, Type::JsValue),
    };
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
