// The map that the suite hands to GetNovaExtensionJsApiObj.
#pragma once

#include "kbase/unknown.h"

#include <QMap>
#include <QString>

/// Makes, or shares, one object and binds it where the two creation values say. 0, or 0x80000008 when there
/// is no JS core. [GUI thread]
using ExtensionFactory = KResult (*)(std::int64_t creationContext, std::int64_t creationTarget);

/// Factories by short object name ("Log" for "NovaExtension.Log"). Owned by the suite.
using ExtensionFactoryMap = QMap<QString, ExtensionFactory>;
