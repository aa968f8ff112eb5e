// The dialogs of the account service: one choice from a list, shown or answered from the profile.
#pragma once

#include "host/profile/profile.h"

#include <functional>

class QDialog;

namespace suite {

struct Choice {
    QString id;
    QString label;
};

struct AccountDialog {
    profile::DialogKind kind;
    QString title;
    QString answerKey; ///< the key of the id in the answer's values
    std::vector<Choice> choices;
    QString preferred; ///< the id selected at first
    bool modal = false;
    bool onTop = false;
    QWidget* owner = nullptr; ///< the window in front of which it stays, and with which it goes; null: none
};

/// Returns at once; `chosen` is called from the event loop with the id, or an empty string when the user
/// cancelled, unless the application ends first. The shown dialog has the list "choices" and the buttons
/// "confirm" and "cancel". [GUI thread]
/// Returns the window, or null for a dialog that is answered.
QDialog* choose(const AccountDialog& dialog, std::function<void(const QString& id)> chosen);

} // namespace suite
