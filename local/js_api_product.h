#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.Product": the product's fixed strings, switches and configuration.
class KJsApiProduct final : public KJCExtendJsObj<KJsApiProduct> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Product";
    static const MemberList& members();

    struct StringOptions;
    struct LanguageOptions;
    struct AppVersionInfo;

    Answer<bool> isPDFStandAlone();
    Answer<QString> getProductString(const StringOptions& options);
    Answer<QString> getConfigString(const QString& name);
    Answer<std::int32_t> getConfigInt(const QString& name);
    Answer<QString> language(const LanguageOptions& options);
    Answer<AppVersionInfo> getAppVersionInfo();
};

} // namespace jsapi
