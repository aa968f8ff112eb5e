#include "cloud/js_api_orbitapi.h"

#include "cloud/clouddocapicaller.h"
#include "cloud/orbitrequest.h"
#include "framework/permission.h"

namespace jsapi {

namespace {

constexpr std::int32_t UsualTimeoutMs = 30'000;
constexpr std::int32_t LongestTimeoutMs = 600'000;

} // namespace

struct KJsApiOrbitapi::RequestOptions {
    std::string requestKey;
    std::string bizSource;
    std::map<std::string, std::string> params;
    std::int32_t timeoutMs = UsualTimeoutMs;
    bool canRetry = false;
    std::map<std::string, std::string> extraParam;
    static constexpr auto fields()
    {
        using Self = RequestOptions;
        return strictly(std::tuple(
            required("requestKey", &Self::requestKey, "the name of the request, such as `user.space`"),
            optional("params", &Self::params, "what the request itself takes, all strings"),
            optional("bizSource", &Self::bizSource, "which part of the product makes it, for statistics"),
            optional("timeoutMs", &Self::timeoutMs, "after how many ms it fails; 1 to 600000"),
            optional("canRetry", &Self::canRetry,
                "whether it may be sent again when the connection breaks; not for one that changes something twice"),
            optional("extraParam", &Self::extraParam,
                "what else the SDK is to know for sending it, all strings")));
    }
};

const MemberList& KJsApiOrbitapi::members()
{
    using Self = KJsApiOrbitapi;
    static const MemberList list { "Requests to the servers of the cloud, by their names.",
        {
            member<&Self::commonRequest>(u"commonRequest", Category::CloudRequest, Type::Object,
                { Type::JsValue,
                    { Type::Object, "callback",
                        "called with the reply, too, after the promise has got it" } },
                "Sends a request for the signed-in user. Resolves with whatever the server replies, also when that is "
                "a refusal: look at `ok`. Rejects when there is no reply, or one that is damaged.",
                { &NotPermitted, &NoCloudSdk, &CallFailed, &PromiseServiceError, &CommonRequestFailed,
                    &CommonRequestTimedOut }),
        } };
    return list;
}

Answer<Promise<OrbitReply>> KJsApiOrbitapi::commonRequest(const SignedInUser&, const JSContextEnv& page,
    const RequestOptions& options, Callback<OrbitReply>& callback)
{
    if (options.timeoutMs < 1 || options.timeoutMs > LongestTimeoutMs)
        return WrongParameters;
    if (!isPermitted(page, KPagePermission::RequestCloud, QString::fromStdString(options.requestKey)))
        return NotPermitted;
    orbitapi::CommonRequestArg request;
    request.baseInfo.requestKey = options.requestKey;
    request.baseInfo.bizSource = options.bizSource;
    request.baseInfo.timeout = options.timeoutMs;
    request.baseInfo.canRetry = options.canRetry;
    request.baseInfo.extraParam = options.extraParam;
    request.extraParam = options.params;
    return KOrbitRequest::start(page, request, std::move(callback));
}

} // namespace jsapi
