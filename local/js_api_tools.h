#pragma once

#include "framework/extensionobject.h"
#include "local/archive/archives.h"
#include "local/confirmdialog.h"
#include "local/innerpage.h"
#include "suite/kdomainmanager.h"

namespace jsapi {

struct Mail;

/// "NovaExtension.Tools": pages, mail, processes and archives.
class KJsApiTools final : public KJCExtendJsObj<KJsApiTools> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Tools";
    static const MemberList& members();

    struct UrlOptions;
    struct DomainOptions;
    struct OwnProgramOptions;

    Answer<bool> openUrl(const JSContextEnv& page, const UrlOptions& options);
    Answer<QString> openInnerUrl(const JSContextEnv& page, const InnerPageOptions& options);
    Answer<QString> getDomainUrl(KDomainManager& domains, const DomainOptions& options);
    Answer<bool> launchProcessByNova(const JSContextEnv& page, const OwnProgramOptions& options);
    Answer<std::int32_t> getIntranetType(KDomainManager& domains);
    Answer<Promise<CompressResult>> compress(const JSContextEnv& page, const CompressOptions& options);
    Answer<Promise<DecompressResult>> decompress(const JSContextEnv& page, const DecompressOptions& options);
    Answer<std::int32_t> showConfirmDlg(const JSContextEnv& page, const ConfirmOptions& options);
    Answer<bool> sendMail(const JSContextEnv& page, const Mail& mail);
};

} // namespace jsapi
