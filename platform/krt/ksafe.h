// Starting programs.
#pragma once

#include <QString>

namespace krt::ksafe {

class KProcess {
public:
    /// Starts a program that goes on without the suite. `command` is the program and its arguments, separated
    /// by spaces. What stands between two quotes (") is one word, whatever is in it; three quotes in a row
    /// are a quote as it stands. No shell reads the command. It
    /// starts in the root directory, so that nothing in the suite's own is taken for a program. False when
    /// the program can not be started; how it ends is not reported. [GUI thread]
    static bool StartDetach(const QString& command);
};
} // namespace krt::ksafe
