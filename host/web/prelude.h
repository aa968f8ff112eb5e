// The engine's own script in every document.
#pragma once

namespace engine::web {

/// The content of prelude.js.
extern const char* const preludeSource;

} // namespace engine::web
