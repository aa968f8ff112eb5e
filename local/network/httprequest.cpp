#include "local/network/httprequest.h"

#include "framework/values.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace jsapi {

namespace {

using std::string_view;

constexpr string_view ForbiddenHeaders[] { "accept-charset", "accept-encoding",
    "access-control-request-headers", "access-control-request-method",
    "access-control-request-private-network", "connection", "content-length", "cookie", "cookie2", "date",
    "dnt", "expect", "host", "keep-alive", "origin", "referer", "set-cookie", "te", "trailer",
    "transfer-encoding", "upgrade", "via" };
constexpr string_view ForbiddenBeginnings[] { "proxy-", "sec-" };
/// Those of a body, which go with it.
constexpr string_view BodyHeaders[] { "content-encoding", "content-language", "content-location",
    "content-type" };

bool isOneOf(const QByteArray& lowerCase, const auto& names)
{
    return std::find(std::begin(names), std::end(names), string_view(lowerCase.constData(), lowerCase.size()))
        != std::end(names);
}

bool isForbidden(const QByteArray& name)
{
    const QByteArray lowerCase = name.toLower();
    return isOneOf(lowerCase, ForbiddenHeaders)
        || std::any_of(std::begin(ForbiddenBeginnings), std::end(ForbiddenBeginnings),
            [&](string_view beginning) { return lowerCase.startsWith(beginning.data()); });
}

/// A header's value: Latin-1, as browsers take it, without controls.
std::optional<QByteArray> checkValue(const std::string& value)
{
    const QString text = QString::fromStdString(value);
    const bool isRight = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c == QLatin1Char('\t') || (c.unicode() >= 0x20 && c.unicode() <= 0xff && c.unicode() != 0x7f);
    });
    if (!isRight)
        return std::nullopt;
    return text.toLatin1().trimmed();
}

void dropHeaders(HttpHeaders& headers, const auto& mayGo)
{
    headers.erase(std::remove_if(headers.begin(), headers.end(),
                      [&](const auto& header) { return mayGo(header.first.toLower()); }),
        headers.end());
}

} // namespace

bool isHttpToken(const QByteArray& name)
{
    constexpr string_view Marks = "!#$%&'*+-.^_`|~";
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')
            || Marks.find(c) != string_view::npos;
    });
}

bool hasHeader(const HttpRequest& request, const char* name)
{
    return std::any_of(request.headers.begin(), request.headers.end(),
        [&](const auto& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
}

std::optional<QUrl> checkUrl(const QUrl& url)
{
    const QString scheme = url.scheme();
    if (!url.isValid() || (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        || url.host().isEmpty() || !url.userInfo().isEmpty() || url.port(1) == 0
        || url.toEncoded().size() > MostUrlLength)
        return std::nullopt;
    QUrl checked = url;
    checked.setFragment({});
    if (checked.path().isEmpty())
        checked.setPath(QLatin1String("/"));
    return checked;
}

std::optional<QByteArray> checkMethod(const std::string& method)
{
    constexpr string_view Usual[] { "GET", "HEAD", "POST", "PUT", "DELETE", "OPTIONS" };
    constexpr string_view Refused[] { "CONNECT", "TRACE", "TRACK" };
    constexpr int Longest = 64;
    const auto given = QByteArray::fromStdString(method);
    const QByteArray upperCase = given.toUpper();
    if (!isHttpToken(given) || given.size() > Longest || isOneOf(upperCase, Refused))
        return std::nullopt;
    return isOneOf(upperCase, Usual) ? upperCase : given;
}

std::optional<HttpHeaders> checkHeaders(const std::map<std::string, std::string>& headers)
{
    HttpHeaders checked;
    std::size_t size = 0;
    for (const auto& [name, value] : headers) {
        size += name.size() + value.size();
        const auto sentName = QByteArray::fromStdString(name);
        const std::optional<QByteArray> sentValue = checkValue(value);
        if (!isHttpToken(sentName) || !sentValue || isForbidden(sentName) || size > MostRequestHeaderBytes)
            return std::nullopt;
        checked.emplace_back(sentName, *sentValue);
    }
    if (checked.size() > MostRequestHeaders)
        return std::nullopt;
    return checked;
}

bool redirectRequest(HttpRequest& request, int status, const QByteArray& location)
{
    const std::optional<QUrl> next = checkUrl(request.url.resolved(QUrl(QString::fromUtf8(location))));
    if (!next || (request.url.scheme() == QLatin1String("https") && next->scheme() != request.url.scheme()))
        return false;
    const bool isRead = request.method == "GET" || request.method == "HEAD";
    if ((status == 303 && !isRead) || ((status == 301 || status == 302) && request.method == "POST")) {
        request.method = "GET";
        request.body.clear();
        dropHeaders(request.headers, [](const QByteArray& name) { return isOneOf(name, BodyHeaders); });
    }
    if (originOf(*next) != originOf(request.url))
        dropHeaders(request.headers, [](const QByteArray& name) { return name == "authorization"; });
    request.url = *next;
    return true;
}

QString originOf(const QUrl& url)
{
    QString host = hostOf(url);
    if (host.contains(QLatin1Char(':')))
        host = QLatin1Char('[') + host + QLatin1Char(']');
    return url.scheme() + QLatin1String("://") + host + QLatin1Char(':') + QString::number(portOf(url));
}

QString hostOf(const QUrl& url)
{
    QString host = url.host(QUrl::FullyEncoded);
    if (host.endsWith(QLatin1Char('.')))
        host.chop(1);
    return host;
}

quint16 portOf(const QUrl& url)
{
    const bool isSecure = url.scheme() == QLatin1String("https");
    return static_cast<quint16>(url.port(isSecure ? 443 : 80));
}

} // namespace jsapi
