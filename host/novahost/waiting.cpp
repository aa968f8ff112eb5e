#include "host/novahost/waiting.h"

#include "host/novahost/description.h"
#include "host/vexlite/valuetext.h"

#include <QHash>
#include <algorithm>
#include <tuple>

namespace novahost {

namespace {

using engine::Pending;
using engine::PendingList;

/// Whether a member calls the functions that it gets until the page goes, rather than at the end of something.
bool readIsWatch(const QString& name)
{
    const auto described = Description::builtIn().member(name, Qt::CaseSensitive);
    if (!described)
        return false;
    const Json& parameters = described->member["parameters"];
    return std::any_of(parameters.begin(), parameters.end(),
        [](const Json& parameter) { return parameter["type"].value("watches", false); });
}

bool isWatch(const QString& name)
{
    static QHash<QString, bool> known;
    const auto found = known.constFind(name);
    return found != known.constEnd() ? *found : *known.insert(name, readIsWatch(name));
}

/// Puts the same together, with the longest time; in the order of their kinds, then of their beginnings.
PendingList merge(const PendingList& list)
{
    PendingList merged;
    for (const Pending& one : list) {
        const auto same = std::find_if(merged.begin(), merged.end(), [&](const Pending& other) {
            return other.kind == one.kind && other.member == one.member && other.event == one.event;
        });
        if (same == merged.end()) {
            merged.push_back(one);
        } else {
            same->count += one.count;
            same->since = std::min(same->since, one.since);
        }
    }
    std::sort(merged.begin(), merged.end(), [](const Pending& one, const Pending& other) {
        return std::tie(one.kind, one.since) < std::tie(other.kind, other.since);
    });
    return merged;
}

QString nameOf(const Pending& one)
{
    const bool isOfMember = !one.member.isEmpty();
    switch (one.kind) {
    case Pending::Kind::Script:
        return isOfMember ? QStringLiteral("call of ") + one.member : QStringLiteral("script that runs");
    case Pending::Kind::Timer:
        return QStringLiteral("timer");
    case Pending::Kind::Promise:
        return isOfMember ? QStringLiteral("promise of ") + one.member : QStringLiteral("promise");
    case Pending::Kind::Function:
        return isOfMember ? QStringLiteral("function given to ") + one.member : QStringLiteral("function");
    case Pending::Kind::Listener:
        return QStringLiteral("listener of ") + vexlite::withoutControls(one.event);
    }
    return {};
}

QString textOf(const Pending& one)
{
    const bool isWatched = one.kind == Pending::Kind::Function && isWatch(one.member);
    QString text = isWatched ? QStringLiteral("watch of ") + one.member : nameOf(one);
    if (one.count > 1)
        text += QStringLiteral(" (%1)").arg(one.count);
    if (isWatched || one.kind == Pending::Kind::Timer || one.kind == Pending::Kind::Listener)
        return text;
    const std::chrono::duration<double> time = Pending::Clock::now() - one.since;
    return text + QStringLiteral(" since %1 s").arg(time.count(), 0, 'f', 1);
}

QStringList listOf(const PendingList& list)
{
    QStringList texts;
    for (const Pending& one : merge(list))
        texts.append(textOf(one));
    return texts;
}

QString stepsText(const QStringList& steps)
{
    return QStringLiteral("play of ") + steps.join(QLatin1Char(','));
}

} // namespace

Waiting::Work Waiting::workOf(const engine::Page& page) const
{
    Work work;
    for (const Pending& one : page.pending()) {
        const bool isEvent = one.kind == Pending::Kind::Listener
            || (one.kind == Pending::Kind::Function && isWatch(one.member));
        (isEvent ? work.events : work.kept).push_back(one);
    }
    return work;
}

QStringList Waiting::textsOf(const Work& work) const
{
    QStringList texts = listOf(work.kept);
    const QStringList ownSteps = m_suite.playsLeft();
    if (!ownSteps.isEmpty())
        texts.append(stepsText(ownSteps));
    for (const QString& title : m_suite.shownWindows())
        texts.append(QStringLiteral("window \"%1\"").arg(vexlite::withoutControls(title)));
    if (work.events.empty())
        return texts;
    // The steps of the command line matter only to whom hears of them.
    if (!m_play.hasEnded())
        texts.append(stepsText(m_play.left())
            + QLatin1String(m_play.waitsForNext() ? " (the next one at the signal SIGUSR2)" : ""));
    if (m_keep || !m_play.hasEnded())
        texts += listOf(work.events);
    return texts;
}

QString Waiting::all(const engine::Page& page) const
{
    const Work work = workOf(page);
    QStringList texts = textsOf(work) + listOf(work.events);
    texts.removeDuplicates();
    return texts.join(QStringLiteral(", "));
}

bool Waiting::keeps(const engine::Page& page) const
{
    return page.isBusy() || !textsOf(workOf(page)).isEmpty();
}

QString Waiting::undone(const engine::Page& page) const
{
    Work work = workOf(page);
    std::erase_if(work.kept, [](const Pending& one) { return one.kind == Pending::Kind::Script; });
    return textsOf(work).join(QStringLiteral(", "));
}

QString Waiting::others(const engine::Page& page) const
{
    QStringList texts = listOf(workOf(page).events);
    if (!m_play.hasEnded())
        texts.append(stepsText(m_play.left()));
    return texts.join(QStringLiteral(", "));
}

} // namespace novahost
