#include "host/engine/permissions.h"

#include <algorithm>

namespace engine {

namespace {

constexpr char Usual[] = "usual";

struct Name {
    const char* name;
    KPagePermission permission;
    const char* subject; ///< what it can be followed by; null: nothing
};
constexpr Name Names[] = {
    { "startProgram", KPagePermission::StartProgram, "an absolute path" },
    { "sendMail", KPagePermission::SendMail, nullptr },
    { "readClipboard", KPagePermission::ReadClipboard, nullptr },
    { "readScreen", KPagePermission::ReadScreen, nullptr },
    { "purchase", KPagePermission::Purchase, nullptr },
    { "openAddress", KPagePermission::OpenAddress, "a scheme" },
    { "reachNetwork", KPagePermission::ReachNetwork, "an origin" },
    { "reachPrivateNetwork", KPagePermission::ReachPrivateNetwork, "an address or a network" },
    { "requestCloud", KPagePermission::RequestCloud, "the name of a request" },
    { "useSession", KPagePermission::UseSession, nullptr },
};

/// An IPv4 address in its IPv6 form is the IPv4 address.
QHostAddress plainAddress(const QHostAddress& address)
{
    bool isIPv4 = false;
    const quint32 plain = address.toIPv4Address(&isIPv4);
    return isIPv4 ? QHostAddress(plain) : address;
}

} // namespace

bool Permissions::Entry::covers(const QString& subject) const
{
    if (!hasSubject)
        return true;
    switch (permission) {
    case KPagePermission::StartProgram:
    case KPagePermission::RequestCloud:
        return subject == text;
    case KPagePermission::OpenAddress:
        return QUrl(subject).scheme() == text;
    case KPagePermission::ReachNetwork:
        return origins.matches(Origin::of(subject));
    case KPagePermission::ReachPrivateNetwork: {
        const QHostAddress address = plainAddress(QHostAddress(subject));
        return !address.isNull() && address.protocol() == network.first.protocol()
            && address.isInSubnet(network);
    }
    default:
        return false;
    }
}

std::optional<Permissions::Entry> Permissions::readEntry(const QString& text, QString& error)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    const QString given = text.left(colon);
    const auto* found = std::find_if(std::begin(Names), std::end(Names),
        [&](const Name& name) { return given == QLatin1String(name.name); });
    if (found == std::end(Names)) {
        QStringList names { QLatin1String(Usual) };
        for (const Name& name : Names)
            names << QLatin1String(name.name);
        error = QStringLiteral("there is no permission \"%1\"; use one of %2")
                    .arg(given, names.join(QStringLiteral(", ")));
        return std::nullopt;
    }
    Entry entry { found->permission };
    entry.hasSubject = colon >= 0;
    entry.text = entry.hasSubject ? text.mid(colon + 1) : QString();
    const auto refuse = [&](const QString& message) {
        error = message;
        return std::nullopt;
    };
    if (!entry.hasSubject) {
        if (entry.permission == KPagePermission::StartProgram)
            return refuse(QStringLiteral("must name a program: \"startProgram:/usr/bin/true\""));
        return entry;
    }
    const QString wrong =
        QStringLiteral("must be \"%1\"%2")
            .arg(given,
                found->subject
                    ? QStringLiteral(" or \"%1:\" and %2").arg(given, QLatin1String(found->subject))
                    : QStringLiteral(" alone"));
    switch (entry.permission) {
    case KPagePermission::StartProgram:
        if (!entry.text.startsWith(QLatin1Char('/')))
            return refuse(QStringLiteral("must name a program by its absolute path"));
        return entry;
    case KPagePermission::RequestCloud:
        return entry.text.isEmpty() ? refuse(wrong) : std::optional(entry);
    case KPagePermission::OpenAddress:
        if (QUrl(entry.text + QLatin1Char(':')).scheme() != entry.text || entry.text.isEmpty())
            return refuse(wrong);
        return entry;
    case KPagePermission::ReachNetwork: {
        QString message;
        entry.origins = OriginPattern::of(entry.text, message);
        return message.isEmpty() ? std::optional(entry) : refuse(message);
    }
    case KPagePermission::ReachPrivateNetwork: {
        if (entry.text.contains(QLatin1Char('/'))) {
            entry.network = QHostAddress::parseSubnet(entry.text);
        } else if (const QHostAddress one = plainAddress(QHostAddress(entry.text)); !one.isNull()) {
            entry.network = { one, one.protocol() == QAbstractSocket::IPv4Protocol ? 32 : 128 };
        }
        return entry.network.second >= 0 ? std::optional(entry) : refuse(wrong);
    }
    default:
        return refuse(wrong);
    }
}

Permissions Permissions::read(const QStringList& texts, const QString& place, QStringList& errors)
{
    Permissions read;
    read.m_usual = texts.contains(QLatin1String(Usual));
    for (int i = 0; i < texts.size(); ++i) {
        QString error;
        if (texts[i] == QLatin1String(Usual))
            continue;
        if (std::optional<Entry> entry = readEntry(texts[i], error))
            read.m_entries.push_back(std::move(*entry));
        else
            errors << QStringLiteral("%1[%2]: %3").arg(place).arg(i).arg(error);
    }
    return read;
}

bool Permissions::grant(const Origin& page, KPagePermission permission, const QString& subject) const
{
    const bool isUsual =
        permission != KPagePermission::StartProgram && permission != KPagePermission::ReachPrivateNetwork;
    return (m_usual && isUsual && page.isApplication())
        || std::any_of(m_entries.begin(), m_entries.end(),
            [&](const Entry& entry) { return entry.permission == permission && entry.covers(subject); });
}

} // namespace engine
