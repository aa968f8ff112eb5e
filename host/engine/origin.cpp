#include "host/engine/origin.h"

#include <QRegularExpression>

namespace engine {

namespace {

struct Scheme {
    const char* name;
    int defaultPort; ///< -1 where an origin has no port
};
constexpr Scheme Schemes[] = { { "https", 443 }, { "http", 80 }, { "nova", -1 } };

const Scheme* findScheme(const QString& name)
{
    for (const Scheme& scheme : Schemes) {
        if (name == QLatin1String(scheme.name))
            return &scheme;
    }
    return nullptr;
}

constexpr char Form[] = "an origin is scheme://host or scheme://host:port";

/// Finds characters in hosts that browsers and Qt disagree about: the name could be another one than the page's.
bool isAmbiguous(const QString& host)
{
    static const QRegularExpression deviations(QStringLiteral("[\u00df\u1e9e\u03c2\u200c\u200d]"));
    return host.contains(deviations);
}

/// The message for a URL of a known scheme that is no origin, or an empty string.
QString findFault(const QUrl& url, const Scheme& scheme)
{
    if (!url.isValid())
        return QLatin1String(Form);
    if (url.authority().contains(QLatin1Char('@')))
        return QStringLiteral("an origin has no user name or password");
    if (url.path().size() > 1 || url.hasQuery() || url.hasFragment())
        return QStringLiteral("an origin has no path; leave out what follows the host and port");
    if (url.host().isEmpty())
        return QStringLiteral("an origin has a host: %1://host").arg(url.scheme());
    if (url.port() != -1 && scheme.defaultPort == -1)
        return QStringLiteral("pages of the application have no port");
    return {};
}

} // namespace

Origin Origin::of(const QUrl& url, QString* error)
{
    const Scheme* scheme = findScheme(url.scheme());
    if (!scheme)
        return {};
    if (const QString fault = findFault(url, *scheme); !fault.isEmpty()) {
        if (error)
            *error = fault;
        return {};
    }
    return { url.scheme(), url.host(QUrl::FullyEncoded),
        url.port() == scheme->defaultPort ? -1 : url.port() };
}

Origin Origin::of(const QString& text, QString* error)
{
    if (text.isEmpty() || text == QLatin1String("null"))
        return {};
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty()) {
        if (error)
            *error = QLatin1String(Form);
        return {};
    }
    return of(url, error);
}

bool Origin::isApplication() const
{
    return scheme == QLatin1String("nova");
}

OriginPattern OriginPattern::of(const QString& text, QString& error)
{
    OriginPattern pattern;
    if (text == QLatin1String("*")) {
        pattern.m_hosts = Hosts::EveryOfEveryScheme;
        return pattern;
    }
    static const QRegularExpression wildcard(QStringLiteral("^([a-z]+://)\\*(\\.)?(.*)$"));
    const QRegularExpressionMatch parts = wildcard.match(text);
    QString exact = text;
    if (parts.hasMatch() && parts.capturedLength(2)) {
        pattern.m_hosts = Hosts::Below;
        exact = parts.captured(1) + parts.captured(3);
    } else if (parts.hasMatch()) {
        // With a name in the star's place it is read as any other origin.
        pattern.m_hosts = Hosts::Every;
        exact = parts.captured(1) + QLatin1String("every") + parts.captured(3);
    }

    static const QRegularExpression address(QStringLiteral(":|(^|\\.)\\d[^.]*\\.?$"));
    const Origin origin = Origin::of(exact, &error);
    if (!error.isEmpty())
        return pattern;
    if (origin.isOpaque())
        error = QStringLiteral(
            "a rule is for https://, http:// or nova://, or for \"*\"; other pages get nothing");
    else if (isAmbiguous(exact))
        error = QStringLiteral("browsers differ about this name; write its host in ASCII, as xn--...");
    else if (pattern.m_hosts == Hosts::Below && origin.host.contains(address))
        error = QStringLiteral("there are no hosts below an address");
    else if (pattern.m_hosts == Hosts::Every && origin.host != QLatin1String("every"))
        error = QStringLiteral(
            "a \"*\" stands for whole parts of a name, at its beginning: https://*.docs.example");
    else
        pattern.m_origin = origin;
    return pattern;
}

bool OriginPattern::matches(const Origin& origin) const
{
    if (origin.isOpaque())
        return false;
    OriginPattern one;
    one.m_origin = origin;
    return covers(one);
}

bool OriginPattern::covers(const OriginPattern& other) const
{
    if (m_hosts == Hosts::EveryOfEveryScheme)
        return true;
    if (m_origin.scheme != other.m_origin.scheme || m_origin.port != other.m_origin.port
        || m_hosts < other.m_hosts)
        return false;
    switch (m_hosts) {
    case Hosts::One:
        return m_origin.host == other.m_origin.host;
    case Hosts::Below:
        return other.m_origin.host.endsWith(QLatin1Char('.') + m_origin.host)
            || (other.m_hosts == Hosts::Below && other.m_origin.host == m_origin.host);
    default:
        return true;
    }
}

} // namespace engine
