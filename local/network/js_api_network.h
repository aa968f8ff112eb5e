#pragma once

#include "framework/extensionobject.h"
#include "local/network/download.h"
#include "local/network/httpcall.h"

namespace jsapi {

/// What "httpRequest" and "download" return at once.
struct StartedRequest {
    QString requestId;
    static constexpr auto fields()
    {
        return std::tuple(property("requestId", &StartedRequest::requestId, "given by the page, or new"));
    }
};

/// What the script function of "httpRequest" is called with.
struct HttpReport;

/// "NovaExtension.Network": downloads and HTTP requests.
class KJsApiNetwork final : public KJCExtendJsObj<KJsApiNetwork> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Network";
    static const MemberList& members();

    struct DownloadOptions;
    struct RequestOptions;

    Answer<bool> isConnected();
    Answer<StartedRequest> download(
        const JSContextEnv& page, const DownloadOptions& options, Callback<DownloadReport>& callback);
    Answer<bool> cancelDownload(const JSContextEnv& page, const std::string& requestId);
    Answer<StartedRequest> httpRequest(
        const JSContextEnv& page, const RequestOptions& options, Callback<HttpReport>& callback);
    Answer<Promise<HttpResponse>> fetch(const JSContextEnv& page, const RequestOptions& options);
    Answer<bool> abortRequest(const JSContextEnv& page, const std::string& requestId);
    Answer<QString> genarateRequestId();
};

} // namespace jsapi
