// The digest of a file, made a slice at a time so that the page's thread stays free.
#pragma once

#include "framework/promise.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTimer>

/// One "getFileMd5" request: settles its promise and deletes itself when the file has been read. [GUI thread]
class KFileMd5Request final : public QObject {
    Q_OBJECT

public:
    /// Begins to read `path` for the call; the answer is the promise, or the reason why there is none.
    static Reply start(Call& call, const QString& path);

private:
    explicit KFileMd5Request(const QString& path);
    void readSlice();
    /// Ends the request: `message` is empty when the digest is there.
    void finish(const QString& message);

    KPendingPromise m_promise;
    QFile m_file;
    QCryptographicHash m_hash { QCryptographicHash::Md5 };
    QTimer m_nextSlice;
};
