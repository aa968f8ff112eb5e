// Failure: one way in which a member fails, a named constant. Refusal: a failure that has happened.
//
//     inline constexpr Failure NotExisting { ErrorCode::OperationFailed, "%1 is not existed" };
//     ...
//     return NotExisting / path;          // from a handler that returns an Answer
#pragma once

#include <QString>
#include <cstdint>

namespace jsapi {

/// The "code" of a failure object.
enum class ErrorCode : std::int32_t {
    BadArgument = 1,     ///< an argument is missing, empty or of the wrong type
    OperationFailed = 3, ///< the operation failed, or the service that it needs is not there
};

/// What script finds: thrown, or with `rejects` in a promise that is rejected at once or later.
struct Failure {
    ErrorCode code;
    const char* text; ///< Latin-1; "%1" stands for the subject of the call, such as a path
    bool rejects = false;

    /// The same failure as a rejection. Rejections carry code 3.
    constexpr Failure rejected() const { return { ErrorCode::OperationFailed, text, true }; }
};

class Refusal {
public:
    Refusal(const Failure& failure) // NOLINT(*-explicit-*): "return PathIsIllegal;"
        : m_failure(failure)
    {
    }
    Refusal(const Failure& failure, QString subject)
        : m_failure(failure)
        , m_subject(std::move(subject))
    {
    }

    const Failure& failure() const noexcept { return m_failure; }
    /// The text with its subject, on the heap: the suite may keep it when the library has gone.
    QString text() const
    {
        const QString text = QString::fromLatin1(m_failure.text);
        return m_subject.isNull() ? text : text.arg(m_subject);
    }

private:
    Failure m_failure;
    QString m_subject;
};

/// A failure with what stands for "%1" in its text.
inline Refusal operator/(const Failure& failure, const QString& subject)
{
    return { failure, subject.isNull() ? QLatin1String("") : subject };
}

// Failures of several objects.
inline constexpr Failure MissingParameters { ErrorCode::BadArgument, "missing required parameters." };
inline constexpr Failure WrongParameters { ErrorCode::BadArgument, "wrong parameters." };
inline constexpr Failure EmptyHandle { ErrorCode::OperationFailed, "empty handle." };
inline constexpr Failure PromiseServiceNull { ErrorCode::OperationFailed, "PromiseServiceNull" };
inline constexpr Failure NotSupported { ErrorCode::OperationFailed, "not supported." };

} // namespace jsapi
