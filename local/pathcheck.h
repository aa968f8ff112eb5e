// The one check that every path passes before script may have it written or removed.
#pragma once

#include "framework/arguments.h"

namespace jsapi {

inline constexpr Failure PathIsEmpty { ErrorCode::BadArgument, "Path is empty." };
inline constexpr Failure NewPathIsIllegal { ErrorCode::OperationFailed, "New path is illegal." };

/// An absolute path that script may have written or removed. There is no other way to one than the check, and
/// what changes the disk (local/treechanges.h) takes nothing else.
class WritablePath {
public:
    /// Resolves a path that script supplied: leading parent-directory steps of a relative path are stripped,
    /// one leading environment variable between percent signs is expanded. Nothing for an empty path, for one
    /// that stays relative or that no file name can spell, and for one in a blacklisted download directory or
    /// in the plugin download directory. Touches nothing on disk. [GUI thread]
    static std::optional<WritablePath> check(const QString& given);

    const QString& string() const noexcept { return m_path; }

private:
    explicit WritablePath(QString path)
        : m_path(std::move(path))
    {
    }

    QString m_path;
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
