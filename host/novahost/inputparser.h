// InputParser: how an input of the prompt, which may be unfinished, is understood. Nothing of the page runs for it.
#pragma once

#include "host/engine/page.h"
#include "host/jsc/toolscript.h"

#include <optional>

namespace novahost {

/// [GUI thread] Loads what it needs when it is first used.
class InputParser {
public:
    struct Input {
        bool isIncomplete = false; ///< more of it may follow
        QString error;             ///< why it must not run; empty: nothing is known
        engine::PageScript script;
    };
    /// How a page is to evaluate an input, which knows the declarations of those that were committed.
    Input read(const QString& source);
    /// The declarations of the last input stay.
    void commit();

    /// Whether a script has import or export statements.
    bool isModule(const QString& source);

    struct Suggestions {
        int from = 0;      ///< where what is being typed begins
        QStringList names; ///< that it may become
        std::optional<QStringList>
            path;       ///< whose properties it may become as well; see Page::propertyNames()
        QString member; ///< the member that is being called
    };
    Suggestions suggest(const QString& textBeforeCursor);

    /// The declared type of an expression, or the signature of a member; empty where nothing is declared.
    QString typeOf(const QString& expression);

private:
    engine::jsc::ToolScript& script();
    engine::jsc::ToolScript& completer();

    std::optional<engine::jsc::ToolScript> m_script;
    bool m_completes = false;
};

} // namespace novahost
