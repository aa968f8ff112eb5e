// A play: steps that happen in the suite without a page, one after another, for tests and demonstrations:
//
//     login:user-2@100ms,user:nickName=Bob,member:super=on,logout
//
// A step with a time is played that long after the one before it; one without, by next().
#pragma once

#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

namespace suite {

struct PlayStep {
    QString kind;            ///< "login", "user", ...; the table in play.cpp has all
    QString subject;         ///< a user's id, a key of the user information, a tier, "kill", "cancel"
    QString value;           ///< for "user" the new value, for "member" "on" or "off", of a plugin its name
    std::optional<int> wait; ///< milliseconds
    QString text {};         ///< as it was written
};

/// [GUI thread] for all.
class Play {
public:
    /// The syntax of steps, for the user.
    static QString forms();
    /// As much of each form as does not depend on the profile: "login", "user:", for completion.
    static QStringList beginnings();
    /// Parses steps and checks them against the current profile. Sets `error` when one is wrong.
    static std::vector<PlayStep> read(const QString& steps, QString& error);

    explicit Play(std::vector<PlayStep> steps);

    /// Starts the time of the next step.
    void begin();
    /// Plays the next step at once, if there is one. The step may destroy this object.
    void next();
    bool hasEnded() const { return m_at == m_steps.size(); }
    /// The steps that are left, as they were written.
    QStringList left() const;
    /// Whether the next step is played by next() only.
    bool waitsForNext() const { return !hasEnded() && !m_steps[m_at].wait; }

    /// Calls `watch` with each step of all plays before it is played: "login:user-2"; an empty function ends that.
    static void setWatch(std::function<void(const QString& step)> watch) { s_watch = std::move(watch); }

private:
    inline static std::function<void(const QString&)> s_watch;

    std::vector<PlayStep> m_steps;
    std::size_t m_at = 0;
    QTimer m_timer;
};

} // namespace suite
