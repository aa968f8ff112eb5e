// One request to the servers of the cloud, from the call until its reply.
#pragma once

#include "cloud/js_api_orbitapi.h"
#include "cloud/schema/orbitapi_types.h"

#include <QTimer>

namespace jsapi {

inline constexpr Failure NoCloudSdk { ErrorCode::OperationFailed, "Cloud SDK error." };
inline constexpr Failure CommonRequestFailed =
    Failure { ErrorCode::OperationFailed, "Common request failed." }.rejected();
inline constexpr Failure CommonRequestTimedOut =
    Failure { ErrorCode::OperationFailed, "Common request timed out." }.rejected();

class KOrbitRequest final : public KJsRequestFor<OrbitReply> {
    Q_OBJECT

public:
    explicit KOrbitRequest(Callback<OrbitReply> callback)
        : m_callback(std::move(callback))
    {
    }
    /// Fails with NoCloudSdk and CallFailed, which is also for a request of too many bytes.
    static Answer<Promise<OrbitReply>> start(
        const JSContextEnv& page, const orbitapi::CommonRequestArg& request, Callback<OrbitReply> callback);

    /// For the SDK, once.
    Q_SLOT void slot_commonRequestFinished(bool ok, const QString& requestId, const QByteArray& bytes);

private:
    Q_SLOT void giveUp();

    Callback<OrbitReply> m_callback;
    QTimer m_timeout;
};

} // namespace jsapi
