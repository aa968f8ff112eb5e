#include "local/js_api_novaoffice.h"

#include "kbase/system.h"
#include "krt/dirs.h"
#include "krt/krt.h"
#include "suite/kdcinfo.h"

#include <QHostInfo>

namespace jsapi {

const MemberList& KJsApiNovaoffice::members()
{
    using Self = KJsApiNovaoffice;
    static const MemberList list {
        "Facts about this installation. What the suite does not know is an empty string.",
        {
            member<&Self::getNovaVersion>(
                u"getNovaVersion", Category::Usual, Type::JsValue, "Returns the suite's version."),
            member<&Self::getApplicationName>(u"getApplicationName", Category::Usual, Type::JsValue,
                "Returns the name of the suite's application that runs."),
            member<&Self::getGuid>(
                u"getGuid", Category::Usual, Type::JsValue, "Returns the identifier of this installation."),
            member<&Self::getUuid>(u"getUuid", Category::Usual, Type::JsValue,
                "Returns the identifier of this user's installation."),
            member<&Self::getHdid>(
                u"getHdid", Category::Usual, Type::JsValue, "Returns the identifier of this machine."),
            member<&Self::getChannel>(
                u"getChannel", Category::Usual, Type::JsValue, "Returns the distribution channel's code."),
            member<&Self::getComputerName>(u"getComputerName", Category::Usual, Type::JsValue,
                "Returns the name of this machine in the network."),
            member<&Self::getSystemUserName>(u"getSystemUserName", Category::Usual, Type::JsValue,
                "Returns the name under which the operating system runs the suite."),
            member<&Self::getNovaofficeInstallPath>(u"getNovaofficeInstallPath", Category::Usual,
                Type::JsValue, "Returns the directory of this installation."),
            member<&Self::getCurrentNovaDpi>(u"getCurrentNovaDpi", Category::Usual, Type::JsValue,
                "Returns the display scale, 1 for 96 dots per inch."),
        }
    };
    return list;
}

namespace {

QString readSystemUserName()
{
    const std::uint32_t length = _XGetOSUserName(nullptr, 0);
    std::u16string name(length + 1, u'\0');
    name.resize(qMin(_XGetOSUserName(name.data(), length + 1), length));
    return QString::fromStdU16String(name);
}

} // namespace

Answer<QString> KJsApiNovaoffice::getNovaVersion()
{
    return KDcInfoCDetail::getVersion();
}

Answer<QString> KJsApiNovaoffice::getApplicationName()
{
    return krt::appName();
}

Answer<QString> KJsApiNovaoffice::getGuid()
{
    return KDcInfoCDetail::getGuid();
}

Answer<QString> KJsApiNovaoffice::getUuid()
{
    return KDcInfoCDetail::getUuid();
}

Answer<QString> KJsApiNovaoffice::getHdid()
{
    return KDcInfoCDetail::getHdid3();
}

Answer<QString> KJsApiNovaoffice::getChannel()
{
    return KDcInfoCDetail::getMC();
}

Answer<QString> KJsApiNovaoffice::getComputerName()
{
    return QHostInfo::localHostName();
}

Answer<QString> KJsApiNovaoffice::getSystemUserName()
{
    static const QString name = readSystemUserName();
    return name;
}

Answer<QString> KJsApiNovaoffice::getNovaofficeInstallPath()
{
    return krt::dirs::officeInstallRoot();
}

Answer<double> KJsApiNovaoffice::getCurrentNovaDpi()
{
    return krt::dpiScaled();
}

} // namespace jsapi
