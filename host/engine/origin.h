// Origins, and the patterns by which rules name them.
#pragma once

#include <QString>
#include <QUrl>

namespace engine {

/// The origin of a page: "https://docs.example", "https://docs.example:8443", "nova://help". Opaque where a page has none
/// by which it could be told from others: sandboxed, data:, about:blank, file:, and all schemes but https, http and nova.
struct Origin {
    QString scheme; ///< lower case; empty when the origin is opaque
    QString host;   ///< lower case, in ASCII; an IPv6 address without brackets
    int port = -1;  ///< -1 for the scheme's default port

    /// Of an origin, or of a URL without a path. One that is no origin is opaque, with a message in `error` unless that is
    /// null; what is an opaque origin ("null", "file:///") is no error.
    static Origin of(const QUrl& url, QString* error = nullptr);
    static Origin of(const QString& text, QString* error = nullptr);

    bool isOpaque() const { return scheme.isEmpty(); }
    /// Of the application itself.
    bool isApplication() const;
    bool operator==(const Origin&) const = default;
};

/// One origin, "https://*.example.com" (all hosts below that name, not the name), "https://*" (all hosts) or "*". Each but
/// the last matches one scheme and one port only. None matches an opaque origin.
class OriginPattern {
public:
    /// With a message in `error` when the text is no pattern: it matches nothing then.
    static OriginPattern of(const QString& text, QString& error);

    bool matches(const Origin& origin) const;
    /// Whether this pattern matches everything that the other one does.
    bool covers(const OriginPattern& other) const;

private:
    enum class Hosts { One, Below, Every, EveryOfEveryScheme };

    Hosts m_hosts = Hosts::One;
    Origin m_origin;
};

} // namespace engine
