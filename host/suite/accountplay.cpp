#include "host/suite/accountplay.h"

#include "host/suite/accountservice.h"

#include <QRegularExpression>
#include <algorithm>

namespace suite {

namespace {

const QRegularExpression& stepForm()
{
    static const QRegularExpression form(
        QStringLiteral("^(login|logout|user|member)(?::([^=]+?)(?:=(.*?))?)?(?:@(\\d{1,7})ms)?$"));
    return form;
}

template <typename Entry>
bool names(const std::vector<Entry>& entries, QString Entry::*name, const QString& wanted)
{
    return std::any_of(
        entries.begin(), entries.end(), [&](const Entry& entry) { return entry.*name == wanted; });
}

/// Empty, or why the step can not be played.
QString faultOf(const AccountStep& step)
{
    const auto profile = profile::current();
    if (step.kind == QLatin1String("login")) {
        if (!step.subject.isEmpty() && !names(profile->account.users, &profile::User::userId, step.subject))
            return QStringLiteral("the profile has no user \"%1\"").arg(step.subject);
        if (profile->account.users.empty())
            return QStringLiteral("the profile has no users");
    } else if (step.kind == QLatin1String("user")) {
        const QStringList keys = AccountService::userKeys();
        if (!keys.contains(step.subject))
            return QStringLiteral("\"%1\" is none of %2").arg(step.subject, keys.join(QStringLiteral(", ")));
    } else if (step.kind == QLatin1String("member")) {
        if (!names(profile->account.tiers, &profile::Tier::name, step.subject))
            return QStringLiteral("the profile has no tier \"%1\"").arg(step.subject);
        if (step.value != QLatin1String("on") && step.value != QLatin1String("off"))
            return QStringLiteral("a membership is \"on\" or \"off\"");
    }
    return {};
}

void play(const AccountStep& step)
{
    AccountService& service = AccountService::instance();
    if (step.kind == QLatin1String("login"))
        service.signIn(step.subject);
    else if (step.kind == QLatin1String("logout"))
        service.signOut();
    else if (step.kind == QLatin1String("user"))
        service.changeUser(step.subject, step.value);
    else
        service.changeMembership(step.subject, step.value == QLatin1String("on"));
}

} // namespace

std::vector<AccountStep> AccountPlay::read(const QString& steps, QString& error)
{
    std::vector<AccountStep> read;
    for (const QString& word : steps.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = stepForm().match(word);
        AccountStep step { match.captured(1), match.captured(2), match.captured(3), {} };
        if (!match.captured(4).isEmpty())
            step.wait = match.captured(4).toInt();
        const QString fault = match.hasMatch()
            ? faultOf(step)
            : QStringLiteral(
                "a step is login[:USER], logout, user:KEY=TEXT or member:TIER=on|off, with @100ms "
                "behind it or without");
        if (!fault.isEmpty()) {
            error = QStringLiteral("%1: %2").arg(word, fault);
            return {};
        }
        read.push_back(std::move(step));
    }
    return read;
}

AccountPlay::AccountPlay(std::vector<AccountStep> steps)
    : m_steps(std::move(steps))
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { next(); });
}

void AccountPlay::begin()
{
    if (m_at < m_steps.size() && m_steps[m_at].wait)
        m_timer.start(*m_steps[m_at].wait);
    else
        m_timer.stop();
}

void AccountPlay::next()
{
    if (m_at == m_steps.size())
        return;
    const AccountStep& step = m_steps[m_at++];
    begin();
    play(step);
}

} // namespace suite
