// The digest of a file, made a slice at a time so that the page's thread stays free.
#pragma once

#include "framework/request.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTimer>

/// One "getFileMd5" request. [GUI thread]
class KFileMd5Request final : public KJsRequest {
    Q_OBJECT

public:
    /// Begins to read `path` for the call.
    static Reply start(Call& call, const QString& path);

    explicit KFileMd5Request(const QString& path);

private:
    void readSlice();

    QFile m_file;
    QCryptographicHash m_hash { QCryptographicHash::Md5 };
    QTimer m_nextSlice;
};
