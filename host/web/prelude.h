// The engine's own script in every document.
#pragma once

namespace engine::web {

/// The content of prelude.js.
extern const char* const documentPrelude;
/// The same with script.js, for documents in which scripts of the command line run.
extern const char* const scriptPrelude;

} // namespace engine::web
