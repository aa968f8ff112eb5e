// The configuration centre: named values that outlive the process, shared by the suite or kept per user.
#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

namespace krt::kcc {

/// Whose values are meant: `mode` must be 0, an empty `userId` means everybody's.
struct WriteOptions {
    std::int32_t mode = 0;
    QString userId;
};
struct ReadOptions {
    std::int32_t mode = 0;
    QString userId;
};

/// Called once when a flush has ended, on the GUI thread and never from inside the call that began it.
/// `value` is what was written, or invalid after a removal; `context` is the caller's.
using Completion = void (*)(
    bool success, const QString& key, const QVariant& value, const QVariantMap& context);

// All calls [GUI thread]. The plain ones work on the cached values, which reach the disk soon afterwards; the
// flush ones go past the cache.

/// False when the value can not be stored.
bool setValue(const QString& key, const QVariant& value, const WriteOptions& options);
QVariant value(const QString& key, const QVariant& fallback, const ReadOptions& options);
/// False when there was no such key or the removal failed.
bool remove(const QString& key, const WriteOptions& options);

/// Reads from the disk again.
QVariant flushRead(const QString& key, const QVariant& fallback, const ReadOptions& options);
/// Writes to the disk. True when the write was accepted; `completion` reports its outcome either way, exactly
/// once. A null `completion` is not called.
bool flushWrite(const QString& key, const QVariant& value, Completion completion, const QVariantMap& context,
    const WriteOptions& options);
/// Removes from the disk, as flushWrite.
bool flushRemove(
    const QString& key, Completion completion, const QVariantMap& context, const WriteOptions& options);
} // namespace krt::kcc
