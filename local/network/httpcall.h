// KHttpCall: a request whose response is kept in memory, for "httpRequest" and "fetch".
#pragma once

#include "framework/bytes.h"
#include "local/network/contentdecoder.h"
#include "local/network/httptransfer.h"

#include <QMap>

namespace jsapi {

enum class ResponseType { Text, Bytes };
template <>
inline constexpr std::array<Choice<ResponseType>, 2> ChoicesOf<ResponseType> {
    { { ResponseType::Text, "text" }, { ResponseType::Bytes, "bytes" } }
};

struct HttpResponse {
    QString requestId;
    bool ok = false;
    std::int32_t status = 0;
    QString statusText;
    QString url;
    bool redirected = false;
    QMap<QString, QString> headers;
    QString body;
    std::optional<Bytes> bytes;
    static constexpr auto fields()
    {
        using Self = HttpResponse;
        return std::tuple(property("requestId", &Self::requestId, "of the request"),
            property("ok", &Self::ok, "whether the status is one from 200 to 299"),
            property("status", &Self::status, "such as 200"),
            property("statusText", &Self::statusText, "such as \"OK\""),
            property("url", &Self::url, "where the response is from, after redirects"),
            property("redirected", &Self::redirected, "whether there were redirects"),
            property("headers", &Self::headers,
                "by their names in lower case, several of one name joined with \", \"; without Set-Cookie"),
            property("body", &Self::body,
                "the content, decompressed and read as UTF-8; empty where it is in `bytes`"),
            property("bytes", &Self::bytes, "the content, decompressed, with the `responseType` `bytes`"));
    }
};

/// What became of a call: a response with any status, or why there is none.
using HttpResult = std::variant<HttpResponse, NetworkError>;

class KHttpCall final : public KHttpTransfer {
    Q_OBJECT

public:
    using Done = std::function<void(const HttpResult&)>;
    struct CallOptions {
        JSContextEnv page {};
        QString id;
        HttpRequest request;
        int timeoutMs = 0;
        ResponseType type = ResponseType::Text;
        qint64 maxBytes = 0; ///< of the content, decompressed
    };
    /// `done` is called once, from the event loop; not when the library is unloaded before.
    KHttpCall(CallOptions options, Done done);

private:
    Outcome begin(const HttpHead& head) override;
    Outcome take(const QByteArray& content) override;
    Outcome settle(Outcome outcome) override;
    void report(Outcome outcome) override;

    qint64 m_maxBytes;
    ResponseType m_type;
    Done m_done;
    ContentDecoder m_decoder;
    QByteArray m_content;
    HttpResponse m_response;
};

} // namespace jsapi
