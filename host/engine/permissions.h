// Permissions: what pages may do beyond their own window, by the "permissions" of the rule for their origin.
#pragma once

#include "host/engine/origin.h"
#include "suite/kpagepermission.h"

#include <QHostAddress>
#include <QStringList>
#include <optional>
#include <vector>

namespace engine {

/// One rule's list. Each entry is "usual", the name of a permission ("readClipboard"), or a name with a subject:
/// "startProgram:/usr/bin/true" (that program), "openAddress:mailto" (a scheme), "reachNetwork:https://*.example" (an
/// origin or a pattern), "reachPrivateNetwork:127.0.0.0/8" (an address or a network). startProgram has none without one.
/// Immutable.
class Permissions {
public:
    /// Of a rule that names none, and of pages for which there is no rule: what is usual.
    Permissions() = default;

    /// Appends to `errors` a message for each text that has no meaning: "PLACE[0]: ...".
    static Permissions read(const QStringList& texts, const QString& place, QStringList& errors);

    /// Whether a page may do that. Usual is, for a page of the application, everything but startProgram and
    /// reachPrivateNetwork, and nothing for any other page.
    bool grant(const Origin& page, KPagePermission permission, const QString& subject) const;

private:
    struct Entry {
        KPagePermission permission {};
        bool hasSubject = false;
        QString text {}; ///< a program or a scheme
        OriginPattern origins {};
        QPair<QHostAddress, int> network { {}, -1 };

        bool covers(const QString& subject) const;
    };
    static std::optional<Entry> readEntry(const QString& text, QString& error);

    bool m_usual = true;
    std::vector<Entry> m_entries;
};

} // namespace engine
