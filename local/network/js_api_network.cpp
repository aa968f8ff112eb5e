#include "local/network/js_api_network.h"

#include "local/network/fetchrequest.h"
#include "local/network/transferqueue.h"

#include <QNetworkInterface>
#include <QUuid>
#include <algorithm>
#include <cmath>

namespace jsapi {

namespace {

constexpr Failure UrlIsIllegal { ErrorCode::BadArgument, "URL is illegal." };
constexpr Failure MethodIsIllegal { ErrorCode::BadArgument, "Method is illegal." };
constexpr Failure HeadersAreIllegal { ErrorCode::BadArgument, "Headers are illegal." };
constexpr Failure BodyIsIllegal { ErrorCode::BadArgument, "Body is illegal." };
constexpr Failure TargetIsIllegal { ErrorCode::OperationFailed, "Path is illegal." };
constexpr Failure TargetExists { ErrorCode::OperationFailed, "File exists." };

constexpr std::int32_t UsualTimeoutMs = 30'000;
constexpr std::int32_t LongestTimeoutMs = 600'000;
constexpr double UsualContent = 64 << 20;
constexpr double MostContent = 256 << 20;
constexpr double MostFileBytes = 1LL << 53;
constexpr int MostBodyBytes = 64 << 20;
constexpr int LongestId = 128;

bool isByteCount(double value, double most)
{
    return value >= 1 && value <= most && std::trunc(value) == value;
}

bool isTimeout(std::int32_t value)
{
    return value >= 1 && value <= LongestTimeoutMs;
}

QString makeRequestId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

/// The id that the page gives, or a new one.
Answer<QString> chooseId(const std::optional<QString>& given)
{
    if (!given)
        return makeRequestId();
    if (given->isEmpty() || given->size() > LongestId)
        return WrongParameters;
    return *given;
}

/// A request without a body, which the page may make: what it can be refused for is refused before anything is sent.
Answer<HttpRequest> makeHttpRequest(const JSContextEnv& page, const std::string& url,
    const std::string& method, const std::map<std::string, std::string>& headers)
{
    const std::optional<QUrl> checkedUrl = checkUrl(QUrl(QString::fromStdString(url)));
    if (!checkedUrl)
        return UrlIsIllegal;
    const std::optional<QByteArray> checkedMethod = checkMethod(method);
    if (!checkedMethod)
        return MethodIsIllegal;
    std::optional<HttpHeaders> checkedHeaders = checkHeaders(headers);
    if (!checkedHeaders)
        return HeadersAreIllegal;
    if (!isPermitted(page, KPagePermission::ReachNetwork, originOf(*checkedUrl)))
        return NotPermitted;
    return HttpRequest { *checkedUrl, *checkedMethod, std::move(*checkedHeaders), {} };
}

} // namespace

struct HttpReport {
    QString requestId;
    bool ok = false;
    std::optional<NetworkError> error;
    std::optional<std::int32_t> status;
    std::optional<QString> statusText;
    std::optional<QString> url;
    std::optional<bool> redirected;
    std::optional<QMap<QString, QString>> headers;
    std::optional<QString> body;
    std::optional<Bytes> bytes;
    static constexpr auto fields()
    {
        using Self = HttpReport;
        return std::tuple(property("requestId", &Self::requestId, "of the request"),
            property("ok", &Self::ok, "whether there is a response, with a status from 200 to 299"),
            property(
                "error", &Self::error, "why there is no response; what follows is there without it only"),
            property("status", &Self::status, "such as 200"),
            property("statusText", &Self::statusText, "such as \"OK\""),
            property("url", &Self::url, "as in the response of `fetch`"),
            property("redirected", &Self::redirected, "the same"),
            property("headers", &Self::headers, "the same"), property("body", &Self::body, "the same"),
            property("bytes", &Self::bytes, "the same"));
    }
};

struct KJsApiNetwork::DownloadOptions {
    std::string url;
    QString path;
    bool overwrite = false;
    bool resume = false;
    std::map<std::string, std::string> headers;
    std::int32_t timeoutMs = UsualTimeoutMs;
    std::optional<double> maxBytes;
    std::optional<QString> requestId;
    static constexpr auto fields()
    {
        using Self = DownloadOptions;
        return strictly(std::tuple(
            required("url", &Self::url, "http or https, without a user's name and password"),
            required("path", &Self::path, "the file; its directory must be there", PathIsEmpty),
            optional("overwrite", &Self::overwrite, "replace a file that is there"),
            optional("resume", &Self::resume,
                "go on where an earlier download to this path from this URL ended, and keep for a later one what "
                "has come if this one fails or is canceled"),
            optional("headers", &Self::headers, "as of `fetch`; neither Range nor If-Range"),
            optional("timeoutMs", &Self::timeoutMs, "as of `fetch`"),
            optional(
                "maxBytes", &Self::maxBytes, "the largest file that is taken; without it there is no limit"),
            optional("requestId", &Self::requestId, "as of `fetch`")));
    }
};

struct KJsApiNetwork::RequestOptions {
    std::string url;
    std::string method = "GET";
    std::map<std::string, std::string> headers;
    std::variant<std::string, Bytes> body;
    ResponseType responseType = ResponseType::Text;
    std::int32_t timeoutMs = UsualTimeoutMs;
    double maxBytes = UsualContent;
    std::optional<QString> requestId;
    static constexpr auto fields()
    {
        using Self = RequestOptions;
        return strictly(std::tuple(
            required("url", &Self::url, "http or https, without a user's name and password"),
            optional("method", &Self::method, "any but CONNECT, TRACE and TRACK"),
            optional("headers", &Self::headers,
                "at most 100 with 32 KiB; not those that pages may not set with the web's `fetch` either, such as Host, "
                "Cookie, Origin and Content-Length"),
            optional("body", &Self::body,
                "a string, which is sent as UTF-8, or bytes; at most 64 MiB; not with GET and HEAD"),
            optional(
                "responseType", &Self::responseType, "whether the content is wanted in `body` or in `bytes`"),
            optional("timeoutMs", &Self::timeoutMs,
                "the longest time, from 1 to 600000 ms, in which nothing comes or goes; waiting for its turn is not counted"),
            optional("maxBytes", &Self::maxBytes,
                "the largest content that is taken, decompressed: from 1 byte to 256 MiB"),
            optional("requestId", &Self::requestId,
                "1 to 128 characters, none that the page has under way; without it a new one")));
    }
};

const MemberList& KJsApiNetwork::members()
{
    using Self = KJsApiNetwork;
    static const MemberList list {
        "Downloads and HTTP requests. Each server must be permitted to the page, at every redirect; an "
        "address that is not public (of this machine, a local network, a special use) must be so itself. "
        "Certificates are verified. There are no cookies, no cache and no credentials but the page's own "
        "headers. A page has at most 6 requests and downloads under way at once, all pages 32; as many as 256 "
        "of a page wait. They end with the page. Functions are called after the member has returned.",
        {
            member<&Self::isConnected>(u"isConnected", Category::Usual, Type::JsValue,
                "Whether this machine is in a network: an interface that is up has an address other machines can reach."),
            member<&Self::download>(u"download", Category::Usual, Type::JsValue,
                { Type::JsValue,
                    { Type::Object, "callback",
                        "called with the progress, at most 10 times a second, and once with the end" } },
                "Downloads a file. It is written beside its path and put there when it is whole and on disk; until then what is at the path "
                "stays as it is. A program that is downloaded can not be run.",
                { &WrongParameters, &UrlIsIllegal, &HeadersAreIllegal, &NotPermitted, &TargetIsIllegal,
                    &TargetExists, &RequestIdInUse, &TooManyRequests }),
            member<&Self::cancelDownload>(u"cancelDownload", Category::Usual, Type::JsValue,
                { { Type::JsValue, "requestId", "of a download of this page" } },
                "Ends a download. Returns whether it was under way; its function is called with the state `canceled` then.",
                { &MissingParameters }),
            member<&Self::httpRequest>(u"httpRequest", Category::Usual, Type::JsValue,
                { Type::JsValue,
                    { Type::Object, "callback", "called once, with the response or the error" } },
                "Sends an HTTP request. At most 20 redirects are followed, as the web's `fetch` follows them, none from https to "
                "http; Authorization does not go to another server.",
                { &WrongParameters, &UrlIsIllegal, &MethodIsIllegal, &HeadersAreIllegal, &BodyIsIllegal,
                    &NotPermitted, &RequestIdInUse, &TooManyRequests }),
            member<&Self::fetch>(u"fetch", Category::Usual, Type::JsValue, { Type::JsValue },
                "Sends an HTTP request as `httpRequest` does; the promise resolves with a response of any status.",
                { &WrongParameters, &UrlIsIllegal, &MethodIsIllegal, &HeadersAreIllegal, &BodyIsIllegal,
                    &NotPermitted, &RequestIdInUse, &TooManyRequests, &PromiseServiceNull,
                    &RequestNotPermitted, &HostNotFound, &ConnectionFailed, &TlsFailed, &RequestTimedOut,
                    &TooManyRedirects, &RedirectIsIllegal, &ResponseIsBroken, &ResponseIsTooLarge,
                    &RequestCanceled }),
            member<&Self::abortRequest>(u"abortRequest", Category::Usual, Type::JsValue,
                { { Type::JsValue, "requestId", "of a request of this page" } },
                "Ends a request of `httpRequest` or `fetch`, which fails with \"Canceled.\". Returns whether it was under way.",
                { &MissingParameters }),
            member<&Self::genarateRequestId>(u"genarateRequestId", Category::Usual, Type::JsValue,
                "An id that no other request has or will have."),
        }
    };
    return list;
}

Answer<bool> KJsApiNetwork::isConnected()
{
    const auto interfaces = QNetworkInterface::allInterfaces();
    return std::any_of(interfaces.begin(), interfaces.end(), [](const QNetworkInterface& one) {
        constexpr auto Up = QNetworkInterface::IsUp | QNetworkInterface::IsRunning;
        const auto addresses = one.addressEntries();
        return (one.flags() & (Up | QNetworkInterface::IsLoopBack)) == Up
            && std::any_of(addresses.begin(), addresses.end(), [](const QNetworkAddressEntry& entry) {
                   return !entry.ip().isLinkLocal() && !entry.ip().isLoopback();
               });
    });
}

Answer<StartedRequest> KJsApiNetwork::download(
    const JSContextEnv& page, const DownloadOptions& options, Callback<DownloadReport>& callback)
{
    Answer<QString> id = chooseId(options.requestId);
    if (id.isRefused() || !isTimeout(options.timeoutMs)
        || (options.maxBytes && !isByteCount(*options.maxBytes, MostFileBytes)))
        return WrongParameters;
    Answer<HttpRequest> request = makeHttpRequest(page, options.url, "GET", options.headers);
    if (request.isRefused())
        return request.refusal();
    if (hasHeader(request.value(), "range") || hasHeader(request.value(), "if-range"))
        return HeadersAreIllegal;
    const std::optional<WritablePath> target = WritablePath::check(options.path);
    if (!target || !target->name())
        return TargetIsIllegal;
    if (!PartFile::isFree(*target, options.overwrite))
        return TargetExists;
    KDownload::DownloadOptions checked { page, id.value(), std::move(request.value()), options.timeoutMs,
        *target, options.overwrite, options.resume, {} };
    if (options.maxBytes)
        checked.maxBytes = static_cast<qint64>(*options.maxBytes);
    const Answer<void> queued =
        transferQueue().add(std::make_unique<KDownload>(std::move(checked), std::move(callback)));
    if (queued.isRefused())
        return queued.refusal();
    return StartedRequest { id.value() };
}

namespace {

Answer<bool> endTransfer(const JSContextEnv& page, const std::string& requestId, bool isDownload)
{
    if (requestId.empty())
        return MissingParameters;
    KHttpTransfer* transfer = transferQueue().find(page, QString::fromStdString(requestId));
    if (!transfer || transfer->isDownload() != isDownload)
        return false;
    transfer->cancel();
    return true;
}

} // namespace

Answer<bool> KJsApiNetwork::cancelDownload(const JSContextEnv& page, const std::string& requestId)
{
    return endTransfer(page, requestId, true);
}

namespace {

Answer<KHttpCall::CallOptions> checkOptions(const JSContextEnv& page, const auto& options)
{
    Answer<QString> id = chooseId(options.requestId);
    if (id.isRefused() || !isTimeout(options.timeoutMs) || !isByteCount(options.maxBytes, MostContent))
        return WrongParameters;
    Answer<HttpRequest> made = makeHttpRequest(page, options.url, options.method, options.headers);
    if (made.isRefused())
        return made.refusal();
    HttpRequest& request = made.value();
    const auto* text = std::get_if<std::string>(&options.body);
    if (text && text->size() > std::size_t { MostBodyBytes })
        return BodyIsIllegal;
    request.body = text ? QByteArray::fromStdString(*text) : std::get<Bytes>(options.body).data;
    const bool hasNone = request.method == "GET" || request.method == "HEAD";
    if (!request.body.isEmpty() && (hasNone || request.body.size() > MostBodyBytes))
        return BodyIsIllegal;
    if (text && !text->empty() && !hasHeader(request, "content-type"))
        request.headers.emplace_back("Content-Type", "text/plain;charset=UTF-8");
    return KHttpCall::CallOptions { page, id.value(), std::move(request), options.timeoutMs,
        options.responseType, static_cast<qint64>(options.maxBytes) };
}

HttpReport makeReport(const QString& id, const HttpResult& result)
{
    HttpReport report;
    report.requestId = id;
    if (const auto* error = std::get_if<NetworkError>(&result)) {
        report.error = *error;
        return report;
    }
    const auto& response = std::get<HttpResponse>(result);
    report.ok = response.ok;
    report.status = response.status;
    report.statusText = response.statusText;
    report.url = response.url;
    report.redirected = response.redirected;
    report.headers = response.headers;
    report.body = response.body;
    report.bytes = response.bytes;
    return report;
}

} // namespace

Answer<StartedRequest> KJsApiNetwork::httpRequest(
    const JSContextEnv& page, const RequestOptions& options, Callback<HttpReport>& callback)
{
    Answer<KHttpCall::CallOptions> checked = checkOptions(page, options);
    if (checked.isRefused())
        return checked.refusal();
    const QString id = checked.value().id;
    auto held = std::make_shared<Callback<HttpReport>>(
        std::move(callback)); // functions are copied, callbacks are not
    const Answer<void> queued = transferQueue().add(std::make_unique<KHttpCall>(std::move(checked.value()),
        [id, held](const HttpResult& result) { (*held)(makeReport(id, result)); }));
    if (queued.isRefused())
        return queued.refusal();
    return StartedRequest { id };
}

Answer<Promise<HttpResponse>> KJsApiNetwork::fetch(const JSContextEnv& page, const RequestOptions& options)
{
    Answer<KHttpCall::CallOptions> checked = checkOptions(page, options);
    if (checked.isRefused())
        return checked.refusal();
    return KFetchRequest::start(std::move(checked.value()));
}

Answer<bool> KJsApiNetwork::abortRequest(const JSContextEnv& page, const std::string& requestId)
{
    return endTransfer(page, requestId, false);
}

Answer<QString> KJsApiNetwork::genarateRequestId()
{
    return makeRequestId();
}

} // namespace jsapi
