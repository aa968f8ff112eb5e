// Skins and the files that they are made of.
//
// A skin is a folder with skin.json, which says what it is, and theme.json, the values of its theme. Both are checked
// against a schema, as profiles are.
#pragma once

#include "host/suite/skin/theme.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace suite {

struct Skin {
    QString name;
    QString title;
    bool isDark = false;
    Theme theme;
};

/// Loads a skin by its name: of those built in, of a folder of the profile or of a plugin, with the profile's own colours.
/// Nothing when it can not be used, with the reason in `error`. [GUI thread]
std::optional<Skin> loadSkin(const QString& name, QString& error);

/// Whether there is a skin of this name, or a plugin that may be one when it is loaded.
bool isSkinKnown(const QString& name);

enum class SkinFileKind { Skin, Theme };

/// Reads a file of JSON that follows the schema of its kind. Otherwise `errors` has what is wrong with it.
nlohmann::json readSkinFile(const QString& path, SkinFileKind kind, QStringList& errors);

} // namespace suite
