// Changes of the account that nobody on a page asked for, one after another:
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

struct AccountStep {
    QString kind;            ///< "login", "logout", "user" or "member"
    QString subject;         ///< a user's id, a key of the user information, a tier
    QString value;           ///< for "user" the text, for "member" "on" or "off"
    std::optional<int> wait; ///< milliseconds
};

/// [GUI thread] for all.
class AccountPlay {
public:
    /// Reads steps that fit the profile in force; `error` says what is wrong, and is empty when nothing is.
    static std::vector<AccountStep> read(const QString& steps, QString& error);

    explicit AccountPlay(std::vector<AccountStep> steps);

    /// From here on time counts for the first step.
    void begin();
    /// Plays the next step at once; nothing when there is none left.
    void next();

private:
    std::vector<AccountStep> m_steps;
    std::size_t m_at = 0;
    QTimer m_timer;
};

} // namespace suite
