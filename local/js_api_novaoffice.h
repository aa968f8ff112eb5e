#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.Novaoffice": facts about this installation. No member takes arguments or fails; what the
/// suite does not know is an empty string.
class KJsApiNovaoffice final : public KJCExtendJsObj<KJsApiNovaoffice> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Novaoffice";
    static const MemberList& members();

    Reply getNovaVersion(Call& call);
    Reply getApplicationName(Call& call);
    Reply getGuid(Call& call);
    Reply getUuid(Call& call);
    Reply getHdid(Call& call);
    /// -> the distribution channel's code.
    Reply getChannel(Call& call);
    Reply getComputerName(Call& call);
    /// -> the name under which the operating system runs the suite.
    Reply getSystemUserName(Call& call);
    Reply getNovaofficeInstallPath(Call& call);
    /// -> number: the display scale, 1 for 96 dots per inch.
    Reply getCurrentNovaDpi(Call& call);
};
