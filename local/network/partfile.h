// PartFile: where a download is written until it is whole.
#pragma once

#include "exports/newfile.h"
#include "local/network/networkerror.h"
#include "local/pathcheck.h"

namespace jsapi {

/// A file beside the target, with its permissions. One that can be resumed has the target's name with a dot before it and
/// ".part" behind it; when it is kept, behind its content stands what the content is of: see Origin. It is removed unless
/// it is kept or takes the target's place. [GUI thread]
class PartFile {
public:
    /// What a part is of: a part of anything else is never continued.
    struct Origin {
        QByteArray url;       ///< as the page asked for it
        QByteArray validator; ///< ETag or Last-Modified: changes with what the server has
    };

    /// Whether nothing is at the target, or, to `overwrite`, a file or a link to one.
    static bool isFree(const WritablePath& target, bool overwrite);

    /// Nothing where it can not be made, which for one to be resumed is also so while another download has it.
    static std::optional<PartFile> open(const WritablePath& target, bool isResumable, const QByteArray& url);

    /// The validator of the content that is there already; empty where there is none.
    const QByteArray& validator() const noexcept { return m_validator; }
    qint64 size() const noexcept { return m_size; }

    /// Forgets what is there already.
    bool clear();
    /// Appends. An error says that the file is of no use any more.
    std::optional<NetworkError> append(const QByteArray& content);
    /// Puts the file, on disk, in the target's place. It keeps the permissions of a file that is there, but none to be run.
    std::optional<NetworkError> take(bool overwrite);
    /// Keeps the file for another time.
    void keep(const Origin& origin);

private:
    PartFile(const WritablePath& target, NewFile file)
        : m_target(target)
        , m_file(std::move(file))
    {
    }
    bool cutTo(qint64 size);
    void readOrigin(const QByteArray& url);

    WritablePath m_target;
    NewFile m_file;
    QByteArray m_validator;
    qint64 m_size = 0;
    qint64 m_flushed = 0;       ///< on its way to the disk
    bool m_isUntouched = false; ///< as it was kept
};

} // namespace jsapi
