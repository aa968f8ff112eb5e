// What a line of the prompt becomes before it is evaluated.
#pragma once

#include <QString>
#include <functional>

namespace engine {

struct ReplSource {
    /// The global that holds an awaited value while its declaration is evaluated.
    static constexpr char awaitedName[] = "__awaited";

    QString script;      ///< to be evaluated; its value is awaited
    QString declaration; ///< when not empty, to be evaluated after that, with the value in `awaitedName`
};

/// Decides how `source` is meant; `compiles` says whether a text is a script without errors of syntax. An
/// object literal is an expression; `await` is allowed at the top. The declarations of a script stay, and so
/// does a single one with an awaited initialiser. Several statements with an `await` among them run as the
/// body of a function: their declarations go with it.
ReplSource planReplSource(const QString& source, const std::function<bool(const QString&)>& compiles);

} // namespace engine
