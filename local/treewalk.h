// A walk through a directory and all below it, on descriptors: links are not followed, and of directories that
// move meanwhile none but what was in the tree is shown. However deep the tree is, one descriptor is open.
#pragma once

#include "local/filedescriptor.h"

#include <vector>

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

/// A walk that is done in steps, each of a thousand entries or so of one directory.
class TreeWalk {
public:
    /// Shows a directory's tree, without the directory itself. Both must live as long as the walk.
    TreeWalk(const FileDescriptor& directory, TreeVisitor& visitor);

    enum class State {
        GoesOn,
        Done,
        Ended, ///< by the visitor, or because the tree was moved apart
    };
    /// Goes one step on. Not after the walk has ended.
    State step();

private:
    struct Level {
        FileId id {};
        QByteArray name;                     ///< in the level above
        std::vector<QByteArray> directories; ///< that have not been entered yet
    };

    bool begin(FileDescriptor directory, QByteArray name);
    State list();
    State enterNext();
    State goUp();
    bool show(const char* name, unsigned char type);

    TreeVisitor& m_visitor;
    FileDescriptor m_here; ///< of the last level
    std::vector<Level> m_levels;
    FileDescriptor m_listed; ///< is being shown, and becomes a level when it has directories
    Level m_below;
};

/// Shows a directory's tree in one go. False when the walk ended before.
bool walkTree(const FileDescriptor& directory, TreeVisitor& visitor);

} // namespace jsapi
