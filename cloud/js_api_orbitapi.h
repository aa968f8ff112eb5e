#pragma once

#include "cloud/signedinuser.h"
#include "framework/extensionobject.h"
#include "framework/request.h"

namespace jsapi {

/// What a server of the cloud replied.
struct OrbitReply {
    bool ok = false;
    std::int32_t resultState = 0;
    std::int32_t httpStatusCode = 0;
    std::int32_t networkError = 0;
    std::string message;
    std::optional<QVariant> data;
    std::string result;
    std::map<std::string, std::string> headers;
    std::string host;
    std::string api;
    std::string userId;
    double replyTime = 0;
    double duration = 0;
    static constexpr auto fields()
    {
        using Self = OrbitReply;
        return std::tuple(property("ok", &Self::ok, "whether `resultState` is 0"),
            property("resultState", &Self::resultState, "how the request ended; 0 that it succeeded"),
            property("httpStatusCode", &Self::httpStatusCode, "the server's status; 0 when none was reached"),
            property("networkError", &Self::networkError, "why none was reached; 0 when one was"),
            property("message", &Self::message, "what the server says of it, not meant for users"),
            property("data", &Self::data,
                "what was requested: JSON with an object or a list, parsed, or any other string as it is. Absent "
                "where there is none"),
            property(
                "result", &Self::result, "the body of the reply, where the server gives it besides the data"),
            property("headers", &Self::headers, "the headers of the reply"),
            property("host", &Self::host, "the server"),
            property("api", &Self::api, "the request's name on the server"),
            property("userId", &Self::userId, "the user for whom it was made"),
            property("replyTime", &Self::replyTime, "when the reply came, ms since 1970; 0 when not known"),
            property("duration", &Self::duration, "how long it took, ms"));
    }
};

/// "NovaExtension.CloudDoc.Orbitapi": requests to the servers of the cloud.
class KJsApiOrbitapi final : public KJCExtendJsObj<KJsApiOrbitapi> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc.Orbitapi";
    static const MemberList& members();

    struct RequestOptions;

    Answer<Promise<OrbitReply>> commonRequest(const SignedInUser& user, const JSContextEnv& page,
        const RequestOptions& options, Callback<OrbitReply>& callback);
};

} // namespace jsapi
