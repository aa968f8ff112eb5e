// What a page must not take away by removing what holds it or leads to it: the home directory, and what the
// suite has closed to pages.
#pragma once

#include "local/filedescriptor.h"

#include <memory>

namespace jsapi {

/// Whether an open directory must stay: the home directory or a closed place is in it, at any depth, or the way
/// to the home directory leads through it, or another file system is mounted on or in it, which could not be
/// removed. So must one that can not be looked through.
bool holdsGuardedPlace(const FileDescriptor& directory);

/// The same, a step at a time, so that a thread stays free.
class GuardedPlaceLook {
public:
    explicit GuardedPlaceLook(FileDescriptor directory);
    ~GuardedPlaceLook();
    GuardedPlaceLook(const GuardedPlaceLook&) = delete;
    GuardedPlaceLook& operator=(const GuardedPlaceLook&) = delete;

    /// Goes one step on. Nothing until it is known. Not after that.
    std::optional<bool> step();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Whether a link must stay: the way to the home directory, or to a closed place, leads through it. So must one
/// that leads to more than can be looked through in a moment.
bool leadsToGuardedPlace(const QString& link);

} // namespace jsapi
