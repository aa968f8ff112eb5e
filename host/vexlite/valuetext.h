// Values as text: for records, which programs read, and for people.
//
// Only native values are read, so no script of a page runs.
#pragma once

#include "vexlite/jsvariant.h"

#include <QByteArray>
#include <QString>

namespace vexlite {

/// Where a value comes from: a 64-bit integer of a page was a BigInt, one of the library's may become a number.
enum class ValueFrom { Page, Library };

/// A JSON value for each given value, within a number of bytes for all of them. What JSON has not, and what finds no room, is
/// an object with one key that begins with "$": docs/recording.md has them all.
class RecordWriter {
public:
    explicit RecordWriter(int limit)
        : m_limit(limit)
    {
    }
    QByteArray value(const KJSVariant& value, ValueFrom from);
    /// "[1,2]"
    QByteArray list(const JSApiArguments& values, ValueFrom from);

private:
    bool append(const QByteArray& text);
    bool write(const MVARIANT& value, int depth);
    bool writeObject(const MVARIANT& value, int depth);
    template <typename Write> bool writeOr(const char* kind, std::size_t length, Write write);
    template <typename Item> bool writeItems(char open, char close, int count, Item item);

    int m_limit;
    ValueFrom m_from = ValueFrom::Library;
    QByteArray m_out;
};

/// The text as a JSON string, also when it has halves of surrogate pairs.
QByteArray jsonString(const QString& text);

/// For one line of a terminal, which a control character could confuse: these are escaped.
QString withoutControls(const QString& text);

/// As a page would write it, shortened: {path: "/tmp/…", list: [1, 2, 3, …]}.
QString summaryOf(const KJSVariant& value);
/// (1, "two")
QString summaryOf(const JSApiArguments& values);

} // namespace vexlite
