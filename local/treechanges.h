// Changing files and directories without losing what was there.
#pragma once

#include <QString>

/// How replaceFile ended.
enum class Replacement {
    Done,
    CopyFailed, ///< nothing has changed
    Refused,    ///< the file can not be replaced; nothing has changed
};

/// Copies the file `source` to where the file `target` is. The target keeps its content until the copy is
/// whole, so nothing is lost where both are one file, the disk is full or the suite ends meanwhile. [GUI
/// thread]
Replacement replaceFile(const QString& source, const QString& target);

/// Whether a directory is the home directory, holds it, or holds one that is closed to pages: removing it
/// would take those with it. A link holds nothing. [GUI thread]
bool holdsGuardedDirectory(const QString& directory);

/// Removes a directory and everything in it; of a link the link itself. False when something is left.
/// [GUI thread]
bool removeTree(const QString& directory);
