// Waiting: what keeps the run of a script going, and what would be lost when it ended now.
#pragma once

#include "host/novahost/suite.h"
#include "host/suite/play.h"

namespace novahost {

/// [GUI thread]
class Waiting {
public:
    /// Of the page that `suite` has opened. `play` is that of the command line; `keep`: listeners and watches keep the page.
    Waiting(const Suite& suite, const suite::Play& play, bool keep)
        : m_suite(suite)
        , m_play(play)
        , m_keep(keep)
    {
    }

    /// Whether a page whose script has ended goes on.
    bool keeps(const engine::Page& page) const;
    /// Whether it has listeners or watches.
    bool listens(const engine::Page& page) const { return !workOf(page).events.empty(); }
    /// What a page loses that ends now, "timer (2), promise of Network.fetch since 3.1 s"; empty: nothing.
    QString undone(const engine::Page& page) const;
    /// The same, with the call under way, and the listeners and watches, which do not keep the page.
    QString all(const engine::Page& page) const;
    /// What a page hears of but that does not keep it: listeners, watches, and steps that nobody would hear of.
    QString others(const engine::Page& page) const;

private:
    struct Work {
        engine::PendingList kept;   ///< keeps the page
        engine::PendingList events; ///< listeners and watches
    };
    Work workOf(const engine::Page& page) const;
    QStringList textsOf(const Work& work) const;

    const Suite& m_suite;
    const suite::Play& m_play;
    bool m_keep;
};

} // namespace novahost
