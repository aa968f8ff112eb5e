// What the profile's section "dialogs" decides: whether dialogs are shown or answered, and with what.
//
//     if (dialogs::answered()) {
//         const std::optional<dialogs::Answer> answer = dialogs::take(profile::DialogKind::Cloud);
//         return answer && answer->accept;   // no window is made
//     }
#pragma once

#include "host/profile/profile.h"

#include <QStringList>
#include <QVariantMap>
#include <optional>

namespace dialogs {

// All calls [GUI thread].

struct Answer {
    bool accept = true;
    QStringList files; ///< absolute
    QVariantMap values;
};

/// True when dialogs are answered instead of shown: the profile says so, or there is nobody to look at them.
bool answered();

/// The first unused answer of the profile that fits a dialog of this kind, which is then used up; nothing
/// when none is left: the dialog is cancelled. Another profile begins with all of its answers.
std::optional<Answer> take(profile::DialogKind kind);

/// Tells whoever runs the suite that a dialog could not be answered as the profile wants, and what to change.
void warn(const QString& text);

/// Has Qt's own dialogs answered as well, from here to the end of the application: file dialogs from the
/// profile, message boxes with their default, all other modal dialogs by cancelling them. Takes the desktop's
/// own file dialogs out of use when the profile in force answers. Once, after the application was made.
void install();

} // namespace dialogs
