// What the profile says of the browsers that show pages.
#pragma once

#include "host/vexlite/core.h"

namespace novahost {

/// The properties of the browser of this identifier, made now and shown nowhere.
vexlite::BrowserFacts makeBrowserFacts(const QString& browserId);

} // namespace novahost
