// The digest of a file, made a slice at a time so that the page's thread stays free.
#pragma once

#include "framework/request.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTimer>
#include <sys/stat.h>

/// One "getFileMd5" request. It holds one slice in memory, however large the file is. A file that changes
/// while it is read has no digest: the promise is rejected. [GUI thread]
class KFileMd5Request final : public KJsRequest {
    Q_OBJECT

public:
    /// Begins to read `path` for the call.
    static Reply start(Call& call, const QString& path);

    explicit KFileMd5Request(const QString& path);

private:
    bool open();
    void readSlice();
    /// Whether the file is still as it was opened.
    bool isUnchanged() const;

    QString m_path;
    QFile m_file;
    struct stat m_opened { };
    QByteArray m_slice;
    QCryptographicHash m_hash { QCryptographicHash::Md5 };
    QTimer m_nextSlice;
};
