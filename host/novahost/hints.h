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
    QHash<std::int64_t, QSet<QString>> m_given; ///< by context id
};

} // namespace novahost
