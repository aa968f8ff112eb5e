// A walk through a directory and all below it, on descriptors: links are not followed, and of directories that
// move meanwhile none but what was in the tree is shown. However deep the tree is, one descriptor is open.
#pragma once

#include "local/filedescriptor.h"

namespace jsapi {

class TreeVisitor {
public:
    TreeVisitor() = default;
    virtual ~TreeVisitor() = default;
    TreeVisitor(const TreeVisitor&) = delete;
    TreeVisitor& operator=(const TreeVisitor&) = delete;

    // Each returns whether the walk goes on.

    /// An entry of the open directory that is no directory itself.
    virtual bool visit(const FileDescriptor& directory, const char* name, bool isLink) = 0;
    /// A directory, which has just been opened; its entries follow.
    virtual bool enter(const FileDescriptor& directory, const char* name) = 0;
    /// One whose entries have all been shown; `above` is the directory that it is in.
    virtual bool leave(const FileDescriptor& above, const char* name) = 0;
    /// A directory that can not be read, or has become something else.
    virtual bool skip(const FileDescriptor& above, const char* name) = 0;
};

/// Shows a directory's tree, without the directory itself. False when the visitor ended the walk, or the tree
/// was moved apart.
bool walkTree(const FileDescriptor& directory, TreeVisitor& visitor);

} // namespace jsapi
