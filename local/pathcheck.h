// The check that every path passes which script supplies for writing or removing.
#pragma once

#include "framework/arguments.h"
#include "local/filedescriptor.h"

#include <memory>
#include <vector>

namespace jsapi {

inline constexpr Failure PathIsEmpty { ErrorCode::BadArgument, "Path is empty." };
inline constexpr Failure NewPathIsIllegal { ErrorCode::OperationFailed, "New path is illegal." };

/// Whether the suite has closed an absolute path to pages, or a directory that it lies in.
bool isClosedToPages(const QString& path);

/// A path that script may have written or removed. There is no other way to one than the check, and what
/// changes the disk (local/treechanges.h) takes nothing else. It holds the directory open that was checked, so
/// whatever the path comes to lead to afterwards, nothing but that directory is changed.
class WritablePath {
public:
    /// Resolves a path that script supplied: leading parent-directory steps of a relative path are stripped,
    /// one leading environment variable between percent signs is expanded. Nothing for an empty path, for one
    /// that stays relative or that no file name can spell, for one in a blacklisted download directory or in
    /// the plugin download directory, by its name or by where it leads, and for one whose parent steps lead
    /// elsewhere than they read, because they stand behind a link. Changes nothing on disk. [GUI thread]
    static std::optional<WritablePath> check(const QString& given);

    /// The path, absolute and without parent steps.
    const QString& string() const noexcept { return m_path; }

    /// The deepest directory on the way that is there.
    const FileDescriptor& above() const noexcept { return *m_above; }
    /// What leads on from there: directories that are not there, and the entry itself, which may be anything.
    const std::vector<QByteArray>& names() const noexcept { return m_names; }

    /// The entry's name in above(), when all directories on the way are there; nothing else, and nothing for the
    /// root.
    std::optional<QByteArray> name() const;
    /// What is there now. With `followLinks` what a link there leads to.
    std::optional<struct stat> look(bool followLinks = false) const;

private:
    WritablePath() = default;

    QString m_path;
    std::shared_ptr<const FileDescriptor> m_above;
    std::vector<QByteArray> m_names;
};

/// A path as an argument of its own: a string. Refused with PathIsEmpty or NewPathIsIllegal.
template <> struct Argument<WritablePath> {
    static constexpr bool IsScript = true;
    using ScriptType = QString;
    static constexpr std::array Refusals { &PathIsEmpty, &NewPathIsIllegal };
    bool read(ArgumentReader& reader)
    {
        const QString given = readString(reader.next().raw());
        path = WritablePath::check(given);
        return path || reader.refuse(given.isEmpty() ? PathIsEmpty : NewPathIsIllegal);
    }
    const WritablePath& get() const { return *path; }
    std::optional<WritablePath> path;
};

} // namespace jsapi
