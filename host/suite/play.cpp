#include "host/suite/play.h"

#include "host/suite/account/accountservice.h"
#include "host/suite/cloud/cloudservice.h"
#include "host/suite/plugins/pluginmanager.h"
#include "host/suite/remoteconfig/remoteconfig.h"
#include "host/suite/skin/skinservice.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <algorithm>

namespace suite {

namespace {

template <typename Entry, typename Record>
bool contains(const std::vector<Entry>& entries, QString Record::*name, const QString& wanted)
{
    return std::ranges::find(entries, wanted, name) != entries.end();
}

/// What happens to a plugin.
const QMap<QString, void (PluginManager::*)(const QString&)> PluginActions {
    { QStringLiteral("add"), &PluginManager::add },
    { QStringLiteral("cancel"), &PluginManager::cancel },
    { QStringLiteral("remove"), &PluginManager::remove },
};

QString checkLogin(const PlayStep& step)
{
    const auto profile = profile::current();
    if (!step.subject.isEmpty() && !contains(profile->account.users, &profile::User::userId, step.subject))
        return QStringLiteral("the profile has no user \"%1\"").arg(step.subject);
    return profile->account.users.empty() ? QStringLiteral("the profile has no users") : QString();
}

QString checkNothing(const PlayStep&)
{
    return {};
}

QString checkUser(const PlayStep& step)
{
    const QStringList keys = AccountService::userKeys();
    return keys.contains(step.subject)
        ? QString()
        : QStringLiteral("\"%1\" is none of %2").arg(step.subject, keys.join(QStringLiteral(", ")));
}

QString checkMember(const PlayStep& step)
{
    if (!contains(profile::current()->account.tiers, &profile::Tier::name, step.subject))
        return QStringLiteral("the profile has no tier \"%1\"").arg(step.subject);
    if (step.value != QLatin1String("on") && step.value != QLatin1String("off"))
        return QStringLiteral("a membership is \"on\" or \"off\"");
    return {};
}

QString checkCloud(const PlayStep& step)
{
    return step.subject == QLatin1String("kill") ? QString()
                                                 : QStringLiteral("the cloud process can only be killed");
}

QString checkPlugin(const PlayStep& step)
{
    if (!PluginActions.contains(step.subject))
        return QStringLiteral("a plugin can be added, removed, or cancelled while it is loaded");
    QStringList errors;
    return contains(findPlugins(errors), &PluginManifest::name, step.value)
        ? QString()
        : QStringLiteral("there is no plugin \"%1\"").arg(step.value);
}

void playPlugin(const PlayStep& step)
{
    if (PluginManager* manager = PluginManager::instance())
        (manager->*PluginActions[step.subject])(step.value);
}

QString checkSkin(const PlayStep& step)
{
    return isSkinKnown(step.subject) ? QString()
                                     : QStringLiteral("there is no skin \"%1\"").arg(step.subject);
}

/// The value that the text spells, a plain one: a step has no commas.
QVariant readConfigValue(const QString& text)
{
    const QByteArray list = '[' + text.toUtf8() + ']';
    return QJsonDocument::fromJson(list).array().at(0).toVariant();
}

QString checkConfig(const PlayStep& step)
{
    return readConfigValue(step.value).isValid()
        ? QString()
        : QStringLiteral("a value is JSON: a number, true, false, or a string in quotation marks");
}

QString textOf(const PlayStep& step)
{
    return step.kind + (step.subject.isEmpty() ? QString() : QLatin1Char(':') + step.subject)
        + (step.value.isEmpty() ? QString() : QLatin1Char('=') + step.value);
}

AccountService& accounts()
{
    return AccountService::instance();
}

struct StepKind {
    const char* name;
    const char* form;                  ///< for the user
    QString (*check)(const PlayStep&); ///< returns why the step can not be played; empty when it can
    void (*play)(const PlayStep&);
};

constexpr StepKind Kinds[] = {
    { "login", "login[:USER]", checkLogin, [](const PlayStep& step) { accounts().signIn(step.subject); } },
    { "logout", "logout", checkNothing, [](const PlayStep&) { accounts().signOut(); } },
    { "user", "user:KEY=TEXT", checkUser,
        [](const PlayStep& step) { accounts().changeUser(step.subject, step.value); } },
    { "member", "member:TIER=on|off", checkMember,
        [](const PlayStep& step) {
            accounts().changeMembership(step.subject, step.value == QLatin1String("on"));
        } },
    { "cloud", "cloud:kill", checkCloud, [](const PlayStep&) { CloudService::instance().killProcess(); } },
    { "plugin", "plugin:add|cancel|remove=NAME", checkPlugin, playPlugin },
    { "skin", "skin:NAME", checkSkin,
        [](const PlayStep& step) { SkinService::instance().choose(step.subject); } },
    { "config", "config:KEY=JSON", checkConfig,
        [](const PlayStep& step) {
            RemoteConfig::instance().decide(step.subject, readConfigValue(step.value));
        } },
};

const StepKind* findKind(const QString& name)
{
    const auto found = std::find_if(std::begin(Kinds), std::end(Kinds),
        [&](const StepKind& kind) { return name == QLatin1String(kind.name); });
    return found == std::end(Kinds) ? nullptr : found;
}

} // namespace

QString Play::forms()
{
    QStringList forms;
    for (const StepKind& kind : Kinds)
        forms << QLatin1String(kind.form);
    const QString last = forms.takeLast();
    return QStringLiteral("%1 or %2").arg(forms.join(QStringLiteral(", ")), last);
}

QStringList Play::beginnings()
{
    static const QRegularExpression fixed(QStringLiteral("^[a-z]+(:([a-z]+$)?)?"));
    QStringList beginnings;
    for (const StepKind& kind : Kinds)
        beginnings.append(fixed.match(QLatin1String(kind.form)).captured());
    return beginnings;
}

std::vector<PlayStep> Play::read(const QString& steps, QString& error)
{
    static const QRegularExpression form(
        QStringLiteral("^([a-z]+)(?::([^=]+?)(?:=(.*?))?)?(?:@(\\d{1,7})ms)?$"));
    std::vector<PlayStep> read;
    for (const QString& word : steps.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = form.match(word);
        PlayStep step { match.captured(1), match.captured(2), match.captured(3), {}, word };
        if (!match.captured(4).isEmpty())
            step.wait = match.captured(4).toInt();
        const StepKind* kind = findKind(step.kind);
        const QString fault = kind
            ? kind->check(step)
            : QStringLiteral("a step is %1, with @100ms behind it or without").arg(forms());
        if (!fault.isEmpty()) {
            error = QStringLiteral("%1: %2").arg(word, fault);
            return {};
        }
        read.push_back(std::move(step));
    }
    return read;
}

Play::Play(std::vector<PlayStep> steps)
    : m_steps(std::move(steps))
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { next(); });
}

void Play::begin()
{
    if (!hasEnded() && m_steps[m_at].wait)
        m_timer.start(*m_steps[m_at].wait);
    else
        m_timer.stop();
}

QStringList Play::left() const
{
    QStringList texts;
    for (std::size_t i = m_at; i < m_steps.size(); ++i)
        texts.append(m_steps[i].text);
    return texts;
}

void Play::next()
{
    if (hasEnded())
        return;
    const PlayStep step = m_steps[m_at++];
    begin();
    if (s_watch)
        s_watch(textOf(step));
    findKind(step.kind)->play(step);
}

} // namespace suite
