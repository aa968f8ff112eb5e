// CentreFile: the configuration centre's file on disk. Several processes may use one file.
#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <optional>

namespace krt {

/// Whose value, and its name. The empty user is everybody.
struct CentreKey {
    QString userId;
    QString key;
    friend bool operator<(const CentreKey& a, const CentreKey& b)
    {
        return a.userId != b.userId ? a.userId < b.userId : a.key < b.key;
    }
};

using CentreValues = QMap<CentreKey, QVariant>;
/// What is to become of some keys: a new value, or nothing for a removal.
using CentreChanges = QMap<CentreKey, std::optional<QVariant>>;

void applyChanges(const CentreChanges& changes, CentreValues& values);

/// Not thread-safe.
class CentreFile {
public:
    explicit CentreFile(QString path);

    const QString& path() const { return m_path; }
    /// Reads the file into `values`; one that is not there has none. A damaged file is renamed to end in
    /// ".damaged"
    /// (".damaged.2", ...), and written anew with `values` as they are, so that what is known of it lives on.
    /// False when the file can not be read, or not set aside; `values` stays then, too.
    bool read(CentreValues& values);
    /// Reads the file into `values` as above, applies `changes` and writes the file anew, all or nothing.
    /// False, with `values` as they were, when that fails.
    bool update(CentreValues& values, const CentreChanges& changes);

private:
    enum class Found { Whole, Damaged, Unreadable };

    Found load(CentreValues& values);
    bool setAside();
    bool save(const CentreValues& values);

    QString m_path;
};

} // namespace krt
