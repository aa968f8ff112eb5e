// InputHistory: the inputs of all sessions of the prompt, in a file of the user's.
#pragma once

#include <QStringList>

namespace novahost {

/// The inputs are kept in $XDG_STATE_HOME/novahost/repl-history, which only the user can read.
class InputHistory {
public:
    InputHistory();
    /// The oldest first, at most `Length`.
    const QStringList& inputs() const { return m_inputs; }
    /// Adds it for all sessions that begin from now on, unless it is the last one.
    void add(const QString& input);
    /// Why nothing is kept; empty: it is.
    const QString& error() const { return m_error; }

    static constexpr int Length = 1000;

private:
    void shorten();

    QString m_file;
    QString m_error;
    QStringList m_inputs;
};

} // namespace novahost
