// Advice to authors whose script uses what the bare script engine does not have.
#pragma once

#include "host/engine/page.h"

namespace novahost {

/// A line that says what to do about an error; empty when there is nothing to say.
QString adviceOn(const engine::Outcome& error);

} // namespace novahost
