// HttpRequest: what a page wants sent, checked.
#pragma once

#include "framework/answer.h"

#include <QByteArray>
#include <QUrl>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace jsapi {

using HttpHeaders = std::vector<std::pair<QByteArray, QByteArray>>;

inline constexpr int MostRequestHeaders = 100;
inline constexpr int MostRequestHeaderBytes = 32 << 10; ///< names and values of all
inline constexpr int MostUrlLength = 16 << 10;

struct HttpRequest {
    QUrl url;
    QByteArray method = "GET";
    HttpHeaders headers;
    QByteArray body;
};

/// Whether a request has a header, in any case.
bool hasHeader(const HttpRequest& request, const char* name);

/// Whether a text may be a method or the name of a header.
bool isHttpToken(const QByteArray& text);

/// The URL of a request: http or https, with a host, without credentials, which would be shown wherever it is; without
/// a fragment. Nothing for any other.
std::optional<QUrl> checkUrl(const QUrl& url);

/// A method as it is sent. Nothing for what is none, and for CONNECT, TRACE and TRACK.
std::optional<QByteArray> checkMethod(const std::string& method);

/// Headers as they are sent. Nothing where there are too many, where one is none, and for those that only who sends the
/// request can know or that lie to the server about who does: they are Fetch's "forbidden" ones.
std::optional<HttpHeaders> checkHeaders(const std::map<std::string, std::string>& headers);

/// Turns a request into the one that follows a redirect, as Fetch says: methods change or stay by the status, and what is
/// meant for one server is not sent to another. False where the redirect must not be followed.
bool redirectRequest(HttpRequest& request, int status, const QByteArray& location);

/// "https://docs.example:443"
QString originOf(const QUrl& url);

/// The host as it is written in a certificate: without the dot that may stand behind it.
QString hostOf(const QUrl& url);

quint16 portOf(const QUrl& url);

} // namespace jsapi
