// Hints: what a page has most likely meant otherwise, from what is declared of the members.
#pragma once

#include "host/novahost/declaredtypes.h"
#include "host/vexlite/observer.h"

#include <QSet>
#include <optional>

namespace novahost {

/// Prints each hint once for a script of a page; or, when strict, refuses the call, or the reading of a name, with it.
class Hints final : public vexlite::PageChecker {
public:
    explicit Hints(bool isStrict)
        : m_isStrict(isStrict)
    {
    }
    QString checkCall(const vexlite::CallFacts& call) override;
    QString checkName(const JSContextEnv& context, const QString& object, const QString& name) override;

private:
    QString give(const JSContextEnv& context, const QString& text);

    bool m_isStrict;
    DeclaredTypes m_types;
    struct Given {
        QSet<QString> marks;        ///< what was printed, with the file that it was about
        QHash<QString, int> places; ///< how often a hint was due
    };
    QHash<std::int64_t, Given> m_given; ///< by context id
};

} // namespace novahost
