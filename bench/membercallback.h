// What an engine costs by itself: bare callbacks that call the members of an extension object directly.
#pragma once

#include "bench/barescript.h"
#include "bench/page.h"

namespace bench {

/// Puts callbacks of NovaExtension.Bench's "empty" and "enveloped" in place of the script's own. Both must
/// stay.
void addMemberCallbacks(BareScript& script, const NativePage& page, const vexlite::BoundObject& object);

} // namespace bench
