// The amount of a file that is read or written at a time: some milliseconds of work.
#pragma once

#include <QByteArray>

namespace cloudd {

constexpr int SliceBytes = 1 << 20;

/// A shared buffer of SliceBytes, valid until its next use. [the service's thread]
inline char* sliceBuffer()
{
    static QByteArray buffer(SliceBytes, Qt::Uninitialized);
    return buffer.data();
}

} // namespace cloudd
