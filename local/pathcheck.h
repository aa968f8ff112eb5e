// The one check that every path passes before script may have it written or deleted.
#pragma once

#include <QString>
#include <optional>

/// Resolves a path that script supplied: leading parent-directory steps of a relative path are stripped, one
/// leading environment variable between percent signs is expanded. The answer is absolute. Nothing for an
/// empty path, for one that stays relative or that no file name can spell, and for one in a blacklisted
/// download directory or in the plugin download directory. Touches nothing on disk. [GUI thread]
std::optional<QString> checkedPath(const QString& given);
