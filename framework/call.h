// Call: the slots of one call between the JS core's calling convention and a handler. Handlers do not see it:
// their parameters are read through framework/arguments.h, what they return is written through
// framework/answer.h.
#pragma once

#include "framework/failure.h"
#include "framework/values.h"
#include "vexlite/jscore.h"

class KJSONValue;

namespace jsapi {

/// Lives as long as the handler runs. Each operation that writes a slot returns the call's status. [GUI
/// thread]
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

    /// The calling page.
    const JSContextEnv& context() const noexcept { return m_context; }
    const JSApiArguments& arguments() const noexcept { return m_arguments; }

    /// Success: {"success": true, "data": value} in the result slot.
    KResult succeed(KJSVariant value);
    /// The value itself in the result slot: a promise, or what has no envelope.
    KResult succeedPlain(KJSVariant value);
    /// Another extension object in the result slot; takes over one reference. Null, or no JS core, is
    /// EmptyHandle.
    KResult handOut(IJSExtentionObject* object);

    /// Failure: {"success": false, "code", "msg"} in the exception slot; a failure that rejects is a rejected
    /// promise in the result slot instead, or PromiseServiceNull where there are no promises.
    KResult fail(const Refusal& refusal);

private:
    const JSContextEnv& m_context;
    const JSApiArguments& m_arguments;
    KJSVariant& m_result;
    KJSVariant& m_exception;
};

} // namespace jsapi
