// Changing files and directories without losing what was there. Each operation takes a checked path as what
// it changes. [GUI thread] for all.
#pragma once

#include "local/pathcheck.h"

namespace jsapi {

/// Copies a file to where nothing is yet. False when something is there, or the system refused.
bool copyFile(const QString& source, const WritablePath& target);

/// How replaceFile ended.
enum class Replacement {
    Done,
    CopyFailed, ///< nothing has changed
    Refused,    ///< the file can not be replaced; nothing has changed
};

/// Copies the file `source` to where the file `target` is. The target keeps its content until the copy is
/// whole, so nothing is lost where both are one file, the disk is full or the suite ends meanwhile.
Replacement replaceFile(const QString& source, const WritablePath& target);

/// Makes a directory with all directories above it.
bool makeDirectory(const WritablePath& directory);

/// Removes a file.
bool removeFile(const WritablePath& file);

/// Whether a directory is the home directory, holds it, or holds one that is closed to pages: removing it
/// would take those with it. A link holds nothing.
bool holdsGuardedDirectory(const WritablePath& directory);

/// Removes a directory and everything in it; of a link the link itself. False when something is left.
bool removeTree(const WritablePath& directory);

} // namespace jsapi
