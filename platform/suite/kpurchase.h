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

    /// How a purchase ended.
    enum Outcome {
        Bought = 0,
        Cancelled =
            1,      ///< by the user, or because the page has gone, or another user is the current one or none
        Closed = 2, ///< the user has closed the window
        NotLoaded = 3, ///< the purchase page can not be shown
    };

    /// Ask every time. Null while the suite sells nothing.
    static KPurchase* getInstance();
    /// Opens the purchase page for the current user and returns at once, with a number above 0 that no other purchase has.
    /// `page` is whose wish it is; what it asks for may be anything: `item`, which the page begins with if the suite sells
    /// that, and `source`, for the suite's records. It is modal to the page's window, no page can act on it, and it is
    /// cancelled when the page or its window goes, and when another user becomes the current one, or none.
    int open(const JSContextEnv& page, const QString& item, const QString& source);

Q_SIGNALS:
    // Connected by name.

    /// A purchase has ended with one of `Outcome`. `item` is what the user bought, of which the account service knows by now, or
    /// empty. From the event loop, once for each purchase.
    void finished(int purchase, int outcome, const QString& item);
};
