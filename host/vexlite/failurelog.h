// FailureLog: writes down what failures pages see, so that they can be compared with those that are
// described.
#pragma once

#include "host/vexlite/core.h"

#include <QFile>
#include <QSet>

namespace vexlite {

/// A file of this process in a directory that many may share. Each failure is one line of JSON, which is
/// written once:
/// {"code": 3, "member": "FileSystem.copy", "msg": "Path is illegal.", "rejects": false}
class FailureLog final : public Observer {
public:
    /// Makes the directory. `isOpen` is false when there can be no such file.
    explicit FailureLog(const QString& directory);
    bool isOpen() const { return m_file.isOpen(); }
    void callEnded(const CallFacts& call, const CallOutcome& outcome) override;
    void promiseSettled(const SettledPromise& promise) override;

private:
    void add(const QString& object, const QString& member, const KJSVariant& failed, bool rejects);

    QFile m_file;
    QSet<QByteArray> m_lines;
};

} // namespace vexlite
