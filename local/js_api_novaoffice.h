#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Novaoffice": facts about this installation.
class KJsApiNovaoffice final : public KJCExtendJsObj<KJsApiNovaoffice> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Novaoffice";
    static const MemberList& members();

    Answer<QString> getNovaVersion();
    Answer<QString> getApplicationName();
    Answer<QString> getGuid();
    Answer<QString> getUuid();
    Answer<QString> getHdid();
    Answer<QString> getChannel();
    Answer<QString> getComputerName();
    Answer<QString> getSystemUserName();
    Answer<QString> getNovaofficeInstallPath();
    Answer<double> getCurrentNovaDpi();
};

} // namespace jsapi
