// A function for listeners and callbacks that is native: what it costs is the delivery alone.
#pragma once

#include "host/vexlite/pagefunction.h"

namespace bench {

/// `Action` is called with the arguments.
template <typename Action> class NativeFunction final : public vexlite::PageFunction {
public:
    NativeFunction(const JSContextEnv& context, Action action)
        : m_context(context)
        , m_action(std::move(action))
    {
    }
    KResult perform(const JSApiArguments& arguments, KJSVariant*, const QString&) override
    {
        m_action(arguments);
        return KR_OK;
    }
    std::uintptr_t Identity() const override { return reinterpret_cast<std::uintptr_t>(this); }
    JSContextEnv Context() const override { return m_context; }

private:
    JSContextEnv m_context;
    Action m_action;
};

/// As a value that script might pass.
template <typename Action> KJSVariant makeFunction(const JSContextEnv& context, Action action)
{
    return KJSVariant::fromUnknown(new NativeFunction<Action>(context, std::move(action)));
}

} // namespace bench
