// The digest of a file, made a slice at a time so that the page's thread stays free.
#pragma once

#include "framework/pagewatch.h"
#include "framework/request.h"
#include "local/pageturns.h"

#include <QCryptographicHash>
#include <QFile>
#include <sys/stat.h>

namespace jsapi {

inline constexpr Failure Md5PathIsEmpty { ErrorCode::OperationFailed, "Path is empty.", true };
inline constexpr Failure Md5NotExisting { ErrorCode::OperationFailed, "%1 is not existed", true };
inline constexpr Failure Md5NotOpened { ErrorCode::OperationFailed, "%1 can't been opened", true };

/// One "getFileMd5" request. A file that changes while it is read has no digest: the promise is rejected. A page that has gone
/// with its browser has no more files read. [GUI thread]
class KFileMd5Request final : public KJsRequestFor<QString> {
    Q_OBJECT

public:
    /// Begins to make the digest of `path` for a page.
    static Answer<Promise<QString>> start(const JSContextEnv& page, const QString& path);

    KFileMd5Request(const JSContextEnv& page, const QString& path);

    /// Reads the next slice into `buffer`, the first time after opening the file. It waits while a change that is
    /// made now could not be seen by the file's time stamp.
    Slice readSlice(QByteArray& buffer);

private:
    bool open();
    /// Whether the file is still as it was opened.
    bool isUnchanged() const;

    PageWatch m_watch;
    QString m_path;
    QFile m_file;
    struct stat m_opened { };
    QCryptographicHash m_hash { QCryptographicHash::Md5 };
};

} // namespace jsapi
