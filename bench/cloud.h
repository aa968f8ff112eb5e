// Counts replies of the cloud service.
#pragma once

#include "cloud/schema/lark_types.h"

#include <QObject>

namespace bench {

using nova::lark::LarkIpcResult;

class Replies final : public QObject {
    Q_OBJECT

public:
    int arrived = 0;
    int failed = 0;

public Q_SLOTS:
    void onReply(bool ok, const QString&, const LarkIpcResult&)
    {
        ++arrived;
        failed += ok ? 0 : 1;
    }
};

} // namespace bench
