// Changing files and directories without losing what was there. Each operation takes a checked path as what it
// changes, and changes that and nothing else: links that have come to stand on the way are not followed.
// [GUI thread] for all.
#pragma once

#include "local/pathcheck.h"

namespace jsapi {

/// Copies an open regular file to where nothing is yet. False when something is there, or the system refused.
bool copyFile(const FileDescriptor& source, const WritablePath& target);

/// How an entry was replaced.
enum class Replacement {
    Done,
    CopyFailed, ///< nothing has changed
    Refused,    ///< what is there can not be replaced; nothing has changed
};

/// Copies an open regular file to where a file is, or a link to one, which goes. The target keeps its content
/// until the copy is whole, so nothing is lost where both are one file, the disk is full or the suite ends
/// meanwhile. Whatever else is there stays: directories and links to them, devices, sockets, pipes.
Replacement replaceFile(const FileDescriptor& source, const WritablePath& target);

/// Gives a file this content, on disk when it returns. The file keeps its permissions; where there is none it
/// is made. `target` must have a name(). False when that fails: the file then has its old content.
bool writeFile(const QByteArray& content, const WritablePath& target);

/// Makes a directory with all directories above it.
bool makeDirectory(const WritablePath& directory);

/// Removes a file, or a link to one.
bool removeFile(const WritablePath& file);

/// How a directory was removed.
enum class Removal {
    Done,
    Incomplete, ///< something is left
    Refused,    ///< it leads to what pages may not take away; nothing has changed
};

/// Removes a directory and everything in it; of a link to a directory the link. Refused when the home directory
/// or something closed to pages is there or could not be reached any more (local/guardedplaces.h).
Removal removeTree(const WritablePath& directory);

/// Removes what is in a directory that the caller itself has made. False when something is left.
bool emptyDirectory(const FileDescriptor& directory);

} // namespace jsapi
