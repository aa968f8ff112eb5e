// A tree of files that is made out of sight and then put into its place as a whole.
#pragma once

#include "local/pathcheck.h"

#include <memory>
#include <string>

namespace jsapi {

/// The tree lies in a directory of its own, beside the directory that it is to become or in the one whose content it is to
/// become a part of. It goes with the object unless it was placed. Names are checked steps that lead down, separated by
/// slashes, of directories with a slash at the end; no link is followed. errno says why something failed. [GUI thread]
class UnpackedTree {
public:
    /// Null when it can not be made, or the folder is there and no directory.
    static std::unique_ptr<UnpackedTree> make(const WritablePath& folder);
    ~UnpackedTree();
    UnpackedTree(const UnpackedTree&) = delete;
    UnpackedTree& operator=(const UnpackedTree&) = delete;

    const FileDescriptor& root() const noexcept { return m_root; }
    /// Where something in the tree lies now.
    QByteArray pathOf(const std::string& name) const;

    /// Makes a directory with all directories above it, as far as they are not there.
    bool makeDirectory(const std::string& name) const;
    /// Makes a file with all directories above it; none when something is there.
    FileDescriptor makeFile(const std::string& name) const;

    enum class Ended {
        Done,
        Exists, ///< something is there and was not to be replaced, or can not be
        Failed,
    };
    struct Placement {
        Ended ended;
        QByteArray name; ///< of what exists, below the folder and with a slash before it
        int error = 0;   ///< of a failure, as errno
    };
    /// Puts the tree into its place. Directories become one with those that are there; files are replaced only if
    /// `overwrites`. Unless that is Done nothing has changed.
    Placement place(bool overwrites);

private:
    /// Something that was put into its place.
    struct Move {
        QByteArray directory; ///< below the folder
        QByteArray name;
        bool isExchange; ///< what was there is in the tree now
    };

    UnpackedTree() = default;
    Placement merge(
        const FileDescriptor& from, const FileDescriptor& to, const QByteArray& directory, bool overwrites);
    void undo();

    FileDescriptor m_above; ///< what the tree's directory is in
    QByteArray m_name;      ///< of the tree's directory, empty when it is in its place
    QByteArray m_placeName; ///< that the directory is to get, empty when its content becomes that of m_above
    FileDescriptor m_directory;
    FileDescriptor m_root; ///< the tree's directory, or one in it that is to become the folder
    std::vector<Move> m_moves;
};

} // namespace jsapi
