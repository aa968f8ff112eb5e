// So much of a file is read or written at a time: some milliseconds of work.
#pragma once

#include <QByteArray>

namespace cloudd {

constexpr int SliceBytes = 1 << 20;

/// SliceBytes for whoever reads next, on the service's thread.
inline char* sliceBuffer()
{
    static QByteArray buffer(SliceBytes, Qt::Uninitialized);
    return buffer.data();
}

} // namespace cloudd
