// CentreFile: the file of the configuration centre, which several processes may use at the same time.
#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <chrono>
#include <optional>

namespace krt {

/// A user and a name. The empty user is for shared values.
struct CentreKey {
    QString userId;
    QString key;
    friend bool operator<(const CentreKey& a, const CentreKey& b)
    {
        return a.userId != b.userId ? a.userId < b.userId : a.key < b.key;
    }
};

using CentreValues = QMap<CentreKey, QVariant>;
/// New values by key; no value removes the key.
using CentreChanges = QMap<CentreKey, std::optional<QVariant>>;

void applyChanges(const CentreChanges& changes, CentreValues& values);

/// Not thread-safe.
class CentreFile {
public:
    explicit CentreFile(QString path);

    const QString& path() const { return m_path; }
    /// Reads the file into `values`; a missing file has none. A damaged file is renamed to end in ".damaged"
    /// (".damaged.2", ...) and written again with `values`, which are the last known ones. False, with
    /// `values` unchanged, when the file can not be read or renamed.
    bool read(CentreValues& values);
    /// Reads the file into `values` as above, applies `changes`, and replaces the file atomically. False,
    /// with `values` unchanged, when that fails, or when other processes do not let it within `patience`.
    bool update(CentreValues& values, const CentreChanges& changes,
        std::chrono::milliseconds patience = std::chrono::seconds(5));

private:
    enum class Found { Whole, Damaged, Unreadable };

    Found load(CentreValues& values);
    bool setAside();
    bool save(const CentreValues& values);

    QString m_path;
};

} // namespace krt
