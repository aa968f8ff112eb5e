// What happens in the suite that nobody on a page asked for, one step after another:
//
//     login:user-2@100ms,user:nickName=Bob,member:super=on,logout
//
// A step with a time waits that long after the one before it; one without waits for next().
#pragma once

#include <QString>
#include <QTimer>
#include <optional>
#include <vector>

namespace suite {

struct PlayStep {
    QString kind;            ///< one of those in play.cpp
    QString subject;         ///< a user's id, a key of the user information, a tier, "kill"
    QString value;           ///< for "user" the text, for "member" "on" or "off"
    std::optional<int> wait; ///< milliseconds
};

/// [GUI thread] for all.
class Play {
public:
    /// How steps are written, for a person.
    static QString forms();
    /// Reads steps that fit the profile in force; `error` says what is wrong, and is empty when nothing is.
    static std::vector<PlayStep> read(const QString& steps, QString& error);

    explicit Play(std::vector<PlayStep> steps);

    /// From here on time counts for the first step.
    void begin();
    /// Plays the next step at once; nothing when there is none left. The play may be destroyed meanwhile.
    void next();
    bool hasEnded() const { return m_at == m_steps.size(); }

private:
    std::vector<PlayStep> m_steps;
    std::size_t m_at = 0;
    QTimer m_timer;
};

} // namespace suite
