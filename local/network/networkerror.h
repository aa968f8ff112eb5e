// Ways in which a transfer ends without its result. A promise is rejected with the text, a function of script's gets it
// as `error`.
#pragma once

#include "framework/fields.h"
#include "framework/permission.h"

namespace jsapi {

enum class NetworkError {
    NotPermitted,
    HostNotFound,
    ConnectionFailed,
    TlsFailed,
    TimedOut,
    TooManyRedirects,
    RedirectIsIllegal,
    ResponseIsBroken,
    ResponseIsTooLarge,
    StatusIsNoSuccess,
    FileNotWritten,
    DiskIsFull,
    FileExists,
    Canceled,
};

inline constexpr Failure RequestNotPermitted = NotPermitted.rejected();
inline constexpr Failure HostNotFound { ErrorCode::OperationFailed, "Host not found.", true };
inline constexpr Failure ConnectionFailed { ErrorCode::OperationFailed, "Connection failed.", true };
inline constexpr Failure TlsFailed { ErrorCode::OperationFailed, "TLS failed.", true };
inline constexpr Failure RequestTimedOut { ErrorCode::OperationFailed, "Timed out.", true };
inline constexpr Failure TooManyRedirects { ErrorCode::OperationFailed, "Too many redirects.", true };
inline constexpr Failure RedirectIsIllegal { ErrorCode::OperationFailed, "Redirect is illegal.", true };
inline constexpr Failure ResponseIsBroken { ErrorCode::OperationFailed, "Response is broken.", true };
inline constexpr Failure ResponseIsTooLarge { ErrorCode::OperationFailed, "Response is too large.", true };
inline constexpr Failure RequestCanceled { ErrorCode::OperationFailed, "Canceled.", true };

template <>
inline constexpr std::array<Choice<NetworkError>, 14> ChoicesOf<NetworkError> { {
    { NetworkError::NotPermitted, RequestNotPermitted.text },
    { NetworkError::HostNotFound, HostNotFound.text },
    { NetworkError::ConnectionFailed, ConnectionFailed.text },
    { NetworkError::TlsFailed, TlsFailed.text },
    { NetworkError::TimedOut, RequestTimedOut.text },
    { NetworkError::TooManyRedirects, TooManyRedirects.text },
    { NetworkError::RedirectIsIllegal, RedirectIsIllegal.text },
    { NetworkError::ResponseIsBroken, ResponseIsBroken.text },
    { NetworkError::ResponseIsTooLarge, ResponseIsTooLarge.text },
    { NetworkError::StatusIsNoSuccess, "Status is no success." },
    { NetworkError::FileNotWritten, "File can not be written." },
    { NetworkError::DiskIsFull, "Disk is full." },
    { NetworkError::FileExists, "File exists." },
    { NetworkError::Canceled, RequestCanceled.text },
} };

/// What a promise is rejected with.
inline Failure rejection(NetworkError error)
{
    return { ErrorCode::OperationFailed, ChoicesOf<NetworkError>[static_cast<std::size_t>(error)].string,
        true };
}

} // namespace jsapi
