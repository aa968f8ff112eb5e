// Long work for pages, done a slice at a time so that their thread stays free.
#pragma once

#include "vexlite/jsvariant.h"

#include <QByteArray>
#include <QObject>
#include <functional>

namespace jsapi {

enum class Slice {
    Worked,
    Waiting, ///< nothing could be done yet
    Ended,
};

/// Calls `work` again and again from the event loop until it returns Ended or `worker` has gone. All pages take turns, a
/// slice each, and what one page has begun is done one after the other; so work that opens its files in its first slice
/// holds few of them open, whatever its number. The buffer is one for all and of one MiB, its content any. [GUI thread]
void takeTurns(const JSContextEnv& page, QObject* worker, std::function<Slice(QByteArray& buffer)> work);

} // namespace jsapi
