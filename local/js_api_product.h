#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.Product": the product's fixed strings, switches and configuration. No member fails; what is
/// not there is an empty string or 0.
class KJsApiProduct final : public KJCExtendJsObj<KJsApiProduct> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Product";
    static const MemberList& members();

    /// -> boolean: whether the product is a PDF program only.
    Reply isPDFStandAlone(Call& call);
    /// {key: string, option?: integer} -> string. `option` (default 37) selects the product configuration.
    Reply getProductString(Call& call);
    /// (name: string) -> string.
    Reply getConfigString(Call& call);
    /// (name: string) -> integer.
    Reply getConfigInt(Call& call);
    /// {format?: integer, bUseCache?: boolean} -> string. Format 1, the default, names the language with its
    /// region.
    Reply language(Call& call);
    /// -> {platform: string, product: string}.
    Reply getAppVersionInfo(Call& call);
};
