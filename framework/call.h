// Call: one call of a member, its arguments in, its answer out. Handlers take a Call and return a Reply:
//
//     Reply KJsApiLog::logInfo(Call& call)
//     {
//         const Options options = call.options();
//         if (options.string("logStr").isEmpty())
//             return call.fail(ErrorCode::BadArgument, "missing required parameters.");
//         ...
//         return call.succeed();
//     }
#pragma once

#include "framework/values.h"
#include "vexlite/jscore.h"

#include <optional>

class KJSONValue;

/// The "code" of a failure object.
enum class ErrorCode : std::int32_t {
    BadArgument = 1,     ///< an argument is missing, empty or of the wrong type
    OperationFailed = 3, ///< the operation failed, or the service it needs is not there
};

/// The texts that several objects answer.
inline constexpr char MissingParameters[] = "missing required parameters.";
inline constexpr char WrongParameters[] = "wrong parameters.";
inline constexpr char PromiseServiceNull[] = "PromiseServiceNull";

/// That a call has been answered. Only Call makes one, so a handler can not forget to.
class [[nodiscard]] Reply {
public:
    KResult status() const noexcept { return m_status; }

private:
    friend class Call;
    constexpr explicit Reply(KResult status) noexcept
        : m_status(status)
    {
    }
    KResult m_status;
};

/// The named properties of an options object. What is absent, or does not convert, reads as the fallback; no
/// object at all reads as an object without properties.
class Options {
public:
    explicit Options(KRef<IJSONValue> object)
        : m_object(std::move(object))
    {
    }

    explicit operator bool() const noexcept { return static_cast<bool>(m_object); }
    /// Whether there is such a property, and it is not undefined.
    bool has(const char* name) const;
    QString string(const char* name, const QString& fallback = {}) const;
    std::int32_t integer(const char* name, std::int32_t fallback) const;
    bool boolean(const char* name, bool fallback) const;
    // The same, none in place of a fallback.
    std::optional<std::int32_t> integer(const char* name) const;
    std::optional<bool> boolean(const char* name) const;
    /// The value as it is; undefined when absent.
    KJSVariant any(const char* name) const;
    /// The nested object of that name.
    Options object(const char* name) const;
    QStringList names() const;
    QString string(const QString& name) const;

private:
    KRef<IJSONValue> m_object;
};

/// One call. Lives as long as the handler runs. [GUI thread]
class Call {
public:
    Call(const JSContextEnv& context, const JSApiArguments& arguments, KJSVariant& result,
        KJSVariant& exception)
        : m_context(context)
        , m_arguments(arguments)
        , m_result(result)
        , m_exception(exception)
    {
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// The calling page; copy it to answer later.
    const JSContextEnv& context() const noexcept { return m_context; }

    std::size_t count() const noexcept { return m_arguments.size(); }
    /// An argument, behind its references; undefined past the last one.
    const MVARIANT& argument(std::size_t index) const;
    /// An argument to keep.
    KJSVariant copiedArgument(std::size_t index) const;
    /// A script string; null for every other type.
    QString string(std::size_t index) const { return textOf(argument(index)); }
    /// The options object at `index`.
    Options options(std::size_t index = 0) const { return Options(objectOf(argument(index))); }
    /// A function; null for every other type.
    KRef<IJSFunction> function(std::size_t index) const { return functionOf(argument(index)); }

    // Success: {"success": true, "data": value}, with "msg" where there is a message.
    Reply succeed() { return succeed(KJSVariant()); }
    Reply succeed(bool value) { return succeed(KJSVariant::fromBool(value)); }
    Reply succeed(std::int32_t value) { return succeed(KJSVariant::fromInt32(value)); }
    Reply succeed(double value) { return succeed(KJSVariant::fromDouble(value)); }
    Reply succeed(const QString& text) { return succeed(makeText(text)); }
    Reply succeed(KRef<KJSONValue> object);
    /// A promise is the answer itself, and an extension object is handed out as one.
    Reply succeed(KJSVariant value, const QString& message = {});
    Reply succeed(const char*) = delete;
    Reply succeed(const QVariant& value);

    /// Hands out another extension object: takes over one reference. Null fails with 3 `failure`.
    Reply handOut(IJSExtentionObject* object, const char* failure = "empty handle.");
    /// Makes an object of a class by its script name and hands it out.
    Reply handOutNew(const char16_t* scriptName, IJSONValue* options, const char* failure = "empty handle.");
    /// The same, once: the object stays in `kept` and is handed out again the next time.
    Reply handOutKept(KRef<IJSExtentionObject>& kept, const char16_t* scriptName);

    /// Failure: {"success": false, "code", "msg"} in the exception slot.
    Reply fail(ErrorCode code, const char* message) { return fail(code, QString::fromLatin1(message)); }
    Reply fail(ErrorCode code, const QString& message);

    /// The answer is in the result slot as `value` is, without an envelope.
    Reply answer(KJSVariant value);
    /// The member answers with a status of the JS core and no value. A failure is told to script as bad
    /// arguments.
    Reply status(KResult status) { return status == KR_OK ? Reply(KR_OK) : refused(status); }

private:
    Reply refused(KResult status);
    IJSExtentionObject* made(const char16_t* scriptName, IJSONValue* options) const;

    const JSContextEnv& m_context;
    const JSApiArguments& m_arguments;
    KJSVariant& m_result;
    KJSVariant& m_exception;
};
