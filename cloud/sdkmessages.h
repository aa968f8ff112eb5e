// The messages of the cloud SDK as bytes: Thrift's compact protocol, without a header or a length. Only here does the
// library encode messages itself.
#pragma once

#include "cloud/schema/orbitapi_types.h"

#include <QByteArray>
#include <optional>

namespace jsapi {

/// The most bytes of a message, in both directions.
inline constexpr int MaxSdkMessageBytes = 16 << 20;

/// The bytes of a request; empty where there would be too many.
QByteArray encodeSdkRequest(const orbitapi::CommonRequestArg& request);
/// The reply that the bytes are, exactly one; they need not be trusted. Allocates for bytes that are there, not for
/// announced lengths.
std::optional<orbitapi::OrbitApiResult> decodeSdkReply(const QByteArray& bytes);

} // namespace jsapi
