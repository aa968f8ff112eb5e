// The suite's purchase page, on which the signed-in user buys a membership.
#pragma once

#include "vexlite/jsvariant.h"

#include <QObject>
#include <QString>

/// Owned by the suite, which may end it at any time. Its layout is the suite's own, since only the functions below are
/// called, none of them virtual. [GUI thread] for all; throws nothing.
class KPurchase : public QObject {
    Q_OBJECT

public:
    /// What open() returns in place of a purchase's number.
    enum Refused {
        NobodySignedIn = 0,
        AnotherIsOpen = -1, ///< one at a time, whichever page opened it
    };

    /// Ask every time. Null while the suite sells nothing.
    static KPurchase* getInstance();
    /// Opens the purchase page for the current user and returns at once, with a number above 0 that no other purchase has.
    /// `page` is whose wish it is; what it asks for may be anything: `item`, which the page begins with if the suite sells
    /// that, and `source`, for the suite's records. The purchase page stays when that page goes. It is closed when another
    /// user becomes the current one, or none.
    int open(const JSContextEnv& page, const QString& item, const QString& source);

Q_SIGNALS:
    // Connected by name.

    /// The purchase page was closed. `item` is what the user bought, of which the account service knows by now, or empty.
    /// From the event loop, once for each purchase.
    void finished(int purchase, const QString& item);
};
