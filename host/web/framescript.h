// FrameScript: what a document that runs scripts of the command line has besides.
#pragma once

#include "host/engine/page.h"
#include "host/web/wire.h"

namespace engine::web {

/// How a script is run; the letters are those of the prelude.
enum class ScriptKind : char {
    Body = 'b',       ///< of an async function
    Expression = 'e', ///< or a script whose declarations stay
    Kept = 'k',       ///< the same, whose result is kept as a global
    Module = 'm',     ///< imported by its address
};

/// Where the output, the errors and the outcomes of a document's scripts go. [GUI thread]
struct FrameScript {
    PageHost host;
    QStringList arguments; ///< process.argv
    bool colors;           ///< see PageOptions
    bool errorColors;
    std::function<void(int ticket, const Outcome& outcome)> finished;
    /// The document has gone, but not by exit().
    std::function<void()> closed;
    /// What Frame::settle() asked for has been done.
    std::function<void(int ticket, int exitCode)> settled;
    int timers = 0; ///< that the document has set

    /// Reports to the host what a request says. Returns the fault of steps that can not be played; empty: none.
    /// `exit` is called for exit(code) and for a script's error that ends the page, when the host has been called. Any
    /// call of the host may replace the members.
    QString report(WireReader& reader, const std::function<void()>& exit);

private:
    void finishScript(WireReader& reader, const std::function<void()>& exit);
};

} // namespace engine::web
