// The suite's dialogs about sync folders.
#pragma once

#include "vexlite/jsvariant.h"

#include <QVariantMap>

class QObject;

/// Which one, and what its options and the values of its end are, all strings unless said otherwise.
enum class KSyncFolderDialog {
    FolderList = 0, ///< the user's sync folders, where they can be removed; option "from"; no values
    FolderPath =
        1, ///< chooses a local folder; options "title" and "localPath", where it begins; value "localPath"
    CloudSpace = 2, ///< the page of the user's cloud space; option "from"; no values
    Message =
        3, ///< options "title", "text" and "buttons", a list of strings; value "button", the index as an int
    CompanyPrivilege = 4, ///< what the user's company has to offer for it; option "privilege"; no values
};

/// Its layout is the suite's own, since only the functions below are called, none of them virtual. [GUI thread] for all;
/// throws nothing.
class KSyncFolderUi {
public:
    /// Owned by the suite, which may end it or make it later: ask every time. Null when there is none.
    static KSyncFolderUi* getInstance();

    /// Shows a dialog above the page's window, and returns at once. False when it can not be shown. Otherwise the slot
    /// `endedSlot` (a name without parameters) of `receiver` is called once when it has ended, from the event loop, unless
    /// the receiver has gone: with whether the user confirmed (bool) and the values (QVariantMap). It is called also when the
    /// suite ends the service with the dialog open, or the page goes, which ends the dialog, and when the dialog goes with its
    /// window: not confirmed. A dialog whose receiver goes may stay or end.
    bool show(KSyncFolderDialog dialog, const JSContextEnv& page, const QVariantMap& options,
        QObject* receiver, const QString& endedSlot);
};
