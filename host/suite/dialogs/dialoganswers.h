// Dialogs that are not shown but answered, by the section "dialogs" of the profile.
//
//     if (dialogs::areAnswered()) {
//         const std::optional<dialogs::Answer> answer = dialogs::takeAnswer(profile::DialogKind::Cloud);
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

/// Whether somebody sees what is shown.
bool hasDisplay();

/// True when dialogs are answered instead of shown: by the profile, or because there is no display.
bool areAnswered();

/// Takes the first unused answer of the profile that fits a dialog of this kind. Nothing when none is left:
/// the dialog must be cancelled. After a new profile is loaded all its answers are unused.
std::optional<Answer> takeAnswer(profile::DialogKind kind);
/// The same for a dialog that is not cancelled without an answer: only one for this very kind fits it.
std::optional<Answer> takeOwnAnswer(profile::DialogKind kind);

/// Logs that a dialog could not be answered as the profile says, and what to change.
void warn(const QString& text);

/// Answers Qt's own dialogs as well, until the application ends: file dialogs from the profile, message boxes
/// with their default button; all other modal dialogs are cancelled. Disables the desktop's native file
/// dialogs when dialogs are answered. Must be called once, after the application was made.
void install();

} // namespace dialogs
