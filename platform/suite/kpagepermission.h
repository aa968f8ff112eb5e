// What the suite lets a page do beyond its own window.
#pragma once

#include "vexlite/jsvariant.h"

#include <QString>

/// What a page is about to do, and what the subject of the question is then.
enum class KPagePermission {
    StartProgram = 0,        ///< a program: its absolute path
    SendMail = 1,            ///< the addresses, separated by commas
    ReadClipboard = 2,       ///< nothing
    ReadScreen = 3,          ///< nothing
    Purchase = 4,            ///< what is bought, as the page names it; may be empty
    OpenAddress = 5,         ///< the address (URL) that another program, or a window of the suite, is to open
    ReachNetwork = 6,        ///< "https://docs.example:443": scheme, host and port of a request
    ReachPrivateNetwork = 7, ///< an IP address that is loopback, link-local, private, or for a special use
    RequestCloud =
        8, ///< the name of a request to the cloud service or its servers that has no member of its own
    UseSession = 9, ///< nothing: a token of the signed-in user's session
};

namespace kpagepermission {
/// Whether the page may do that now. Never waits for the user. False for a page that is not shown (any more). What the
/// suite allows is its business; the library asks each time, right before it does what it asks for. [GUI thread]
bool isGranted(const JSContextEnv& page, KPagePermission permission, const QString& subject);
} // namespace kpagepermission
